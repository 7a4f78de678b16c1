#pragma once

/// Marks what a shared library of this project shows to the others and to hosts; everything else is hidden.
#define QUILLET_API __attribute__((visibility("default")))
