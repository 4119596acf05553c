#include "host_link_t.h"

host_link_t::~host_link_t() = default;
