// What a driver claims, contained: counts of its fixed records are never trusted.
//
// Used by sensor/style too.
#pragma once

#include "platform/ImageAdjust.h"

// The number of entries that may be read: the claimed number, at least 0 and at most as many as the record holds. A claim
// outside is reported.
int dynamicCommandCount(const ia_dynamic_params_cmds_st& p_stList);
int dynamicItemCount(const ia_dynamic_params_attr_st& p_stRange);
