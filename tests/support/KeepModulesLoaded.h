#pragma once

// For the mains of the test programs: under the address sanitizer no plug-in is unloaded, so that
// what it keeps until the end is still reachable, and what it leaks has a name.

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
extern "C" int dlclose(void *)
{
    return 0;
}
#endif
#endif
