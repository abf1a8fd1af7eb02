// Merges a family's base style with what a device has differently.
//
// Base style: one root element whose children are tabs, each with an attribute "key". Diversity document: top-level
// elements, one a device variant; its attributes are conditions on the module's detail string (name of the field, accepted
// values with commas; one that holds is enough; five characters decide), its children are operations ("Modify",
// "AddAfter", "Delete") with the attribute "tab_key" and, as first child, a whole tab.
//
// Used by sensor/config too: the configuration of a channel holds the merged document.
#pragma once

#include "sensor/config/SysConfig.h"
#include "sensor/diag/Export.h"
#include "tinyxml.h"

#include <string>

// The file that holds the merged document of a channel (from 1): "/tmp/merge_style_ch%d.xml" with its number.
std::string mergedStyleFile(int p_nChannelID);

// Applies the variants that the module configuration selects to *ui_style (from malloc, zero-terminated) and replaces it
// by the merged text (realloc). The merged document stays in the channel's file, so that two merges of one channel must
// not run at the same time. Always QVS_SUCCESS: failures are reported; a document that cannot be parsed counts as far as
// it was parsed.
SENSORDLL_API int mergeStyle(int p_nChannelID, ModuleConfig* p_pModuleConfig, char** ui_style, char* ui_styleDiversity);

// Applies one operation to the first tab whose "key" is p_szTabKey. Changes nothing when there is no such tab, no key, an
// unknown operation or no element where one is needed. Always 0.
SENSORDLL_API int updateStyleTab(TiXmlDocument* p_pStyle, const char* p_szOperation, const char* p_szTabKey,
                                 const TiXmlElement* p_pNewTab);
