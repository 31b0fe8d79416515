#include <X11/Xlib.h>
