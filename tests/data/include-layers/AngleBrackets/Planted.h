#include <QtCore/QString>
#  include <desktop/shell/StatusItem.h>
