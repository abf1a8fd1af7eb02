// Derives the factory parameter set from a style document: every element with both "id" and "value" is one parameter.
#pragma once

#include "platform/Types.h"
#include "sensor/config/KeyVal.h"
#include "sensor/diag/Export.h"
#include "tinyxml.h"

// A number of records that the array of getFctData is sure not to exceed for this text. Each parameter takes a "<", and
// what the text holds as "&lt;" can come out as one when a document is printed and read again.
u32 factoryRoom(const char* p_szStyle);

// Fills the array with the parameters of the channel's dynamic style (channel from 1), in document order, and their number.
// Always QVS_SUCCESS: failures are reported.
SENSORDLL_API int getFctData(int p_channelID, char* p_szStyle, KeyVal* p_pKeyVal, u32* p_pnKeyValNum,
                             bool p_bShowWDRFalg);

// Appends the parameters of the subtree, in document order, behind the *p_pnKeyValNum that the array holds already, and
// counts them. The array must hold them all. Always 0; nothing for a null element.
SENSORDLL_API int style2KeyVal(TiXmlElement* pRootNode, KeyVal* p_pKeyVal, u32* p_pnKeyValNum);
