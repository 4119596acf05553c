#include "database/persistent/dbs/drivers/ps_object_driver_baos_bus_detail_t.h"
