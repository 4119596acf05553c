#include "platform/qjsonserializer/qjsonserializer.h"
