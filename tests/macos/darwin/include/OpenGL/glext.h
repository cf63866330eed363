#pragma once

#include <OpenGL/gl.h>
