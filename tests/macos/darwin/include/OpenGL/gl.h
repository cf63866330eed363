#pragma once

// The Khronos group's own declarations, which Apple's hold too.
#include <GL/gl.h>
