// Fits a style document to what the driver can do now.
//
// Parameter elements carry "id" (the driver command) and "value"; their child elements are choices, each with "index", the
// value that it stands for. The walks below go depth-first in document order and handle every element whose "id" is the
// command; below such an element they do not look further, and they do not stop at the first, so that for the searches the
// last one counts. A null element yields 0.
#pragma once

#include "platform/ImageAdjust.h"
#include "sensor/diag/Export.h"
#include "tinyxml.h"

#include <string>

// From this value of the maximum shutter (49) on, the style's own choices count in place of the driver's. The value is this
// much more than the choice that it stands for, and what is stored is not the driver's to correct.
constexpr int kOwnChoicesOffset = 200;

// Asks the driver (channel from 1) for its dynamic parameters, sets their defaults, removes choices that are not legal and
// the elements of what is not offered, and returns the text in strDnaStyle. Always QVS_SUCCESS: failures are reported; a
// failed range request applies the range of the command before it.
SENSORDLL_API int getDnaStyle(int p_channelID, const char* szStyle, std::string& strDnaStyle, bool p_bShowWDRFalg);

// Sets "value" to the range's default and removes the choices that it does not hold. -1 at the first choice without
// "index", with the rest left as it is; otherwise 0.
SENSORDLL_API int doDnaStyle(TiXmlElement* p_pElement, int p_nCmd, const ia_dynamic_params_attr_st* p_pRange);

// Rebuilds the range from the element's own choices: items, their number, lowest and highest. Choices beyond the 64 that a
// range holds are left out, which is reported. Always 0.
SENSORDLL_API int doCustomizeStyle(TiXmlElement* p_pElement, int p_nCmd, ia_dynamic_params_attr_st* p_pRange);

// Reads "value"; without one, p_nValue stays as it is. Always 0.
SENSORDLL_API int getDnaValbyCmdId(TiXmlElement* p_pElement, int p_nCmd, int& p_nValue);

// Finds the element; without one, p_pNode stays as it is. Always 0.
SENSORDLL_API int getNodebyCmdId(TiXmlElement* p_pElement, int p_nCmd, TiXmlElement*& p_pNode);

// Removes the node from its parent, which frees it. -1 when either argument is null; otherwise 0, also when the node has
// no parent element.
SENSORDLL_API int DeleteNode(TiXmlElement* p_pRoot, TiXmlElement* p_pNode);

// Pairs the elements 112 and 128: "enable_list" of the one that is asked for names the other. Always 0.
SENSORDLL_API int ModifyNodebyCmdId(TiXmlElement* p_pElement, int p_nCmd);
