#include "orv/orv_constants.h"

#define ORV_COUNT_ONE(identifier, id, name) +1
typedef char
    table_lists_all_solvers[0 ORV_SOLVER_TABLE(ORV_COUNT_ONE) == ORV_SOLVER_COUNT ? 1 : -1];
extern table_lists_all_solvers unused;
