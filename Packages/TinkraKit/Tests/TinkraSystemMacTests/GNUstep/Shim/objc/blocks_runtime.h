#pragma once

// Debian's packages leave this header out; it only names the functions of the blocks runtime.
#include <Block.h>
