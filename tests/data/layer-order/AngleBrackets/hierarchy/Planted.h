#include <QtCore/QString>
#  include <myday/MyDayStore.h>
