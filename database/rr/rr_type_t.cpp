#include "database/rr/rr_type_t.h"

DATABASE_STRING_TYPE_DEFINE(database::rr::rr_type_t);
