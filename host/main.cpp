#include "CommandLine.h"

int main(int argc, char** argv)
{
    return Host::RunCommandLine(argc, argv);
}
