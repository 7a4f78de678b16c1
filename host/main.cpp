#include "CommandLine.h"
#include "LargePages.h"

int main(int argc, char** argv)
{
    Host::UseLargePages();
    return Host::RunCommandLine(argc, argv);
}
