#include <QtCore/QString>
#  include <core/myday/MyDayStore.h>
