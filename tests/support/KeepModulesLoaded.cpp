// For a program that the tests run, in a tree with the address sanitizer.

#include "support/KeepModulesLoaded.h"
