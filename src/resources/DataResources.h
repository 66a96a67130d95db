#pragma once

// Makes the tables that the program carries known to Qt under the prefix "Data:": a static
// library's own registration is dropped by the linker. May be called again, from any thread.

void initDataResources();
