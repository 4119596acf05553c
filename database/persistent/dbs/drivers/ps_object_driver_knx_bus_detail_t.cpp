#include "database/persistent/dbs/drivers/ps_object_driver_knx_bus_detail_t.h"
