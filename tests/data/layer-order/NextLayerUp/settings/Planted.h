#include "recording/FacecamStyle.h"
#include "auth/AccountLabels.h"
