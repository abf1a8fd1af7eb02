// What this program takes from the room that the programs share, under the names of its own.
#pragma once

#include "apps/shared/CommandError.h"
#include "apps/shared/KeyNames.h"
#include "apps/shared/NearestMatch.h"
#include "apps/shared/Number.h"
#include "apps/shared/ParameterFile.h"
#include "apps/shared/StyleParameters.h"
#include "apps/shared/Text.h"

namespace sensorctl {

using apps::CommandError;

using apps::describeKey;
using apps::KeyName;
using apps::keyNames;
using apps::keyOfName;
using apps::nameOfKey;
using apps::parseKey;
using apps::shortNameOfKey;

using apps::didYouMean;
using apps::nearestMatch;

using apps::kIntMax;
using apps::looksLikeNumber;
using apps::parseDecimal;
using apps::parseInt;
using apps::parseNumber;
using apps::parseSwitch;

using apps::ParameterFile;
using apps::parameterFileName;
using apps::readParameterFile;
using apps::StoredValue;
using apps::writeParameterFile;

using apps::parseStyle;
using apps::StyleChoice;
using apps::StyleParameter;
using apps::tabsToChoose;
using apps::valuesToChoose;

using apps::join;
using apps::linesOf;
using apps::lowerCase;
using apps::printable;
using apps::quoted;
using apps::startsWith;
using apps::wrapped;

}  // namespace sensorctl
