#include "Planted.h"
