#include "core/recording/FacecamStyle.h"
#include "core/auth/AccountLabels.h"
