#include "input/hands/standin/CameraPlugin.h"
