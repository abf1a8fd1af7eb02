// What people type at sensorctl: lines of a script and arguments of the program.
//
// 1. The input is one line. Take it apart; what cannot be taken apart is refused with an error.
// 2. Put the words together again and take that apart: the same words.
// 3. Hand the words to the program's options: they are understood, or there is a text that says why not.
#include "apps/sensorctl/Options.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Tokeniser.h"
#include "fuzz/support/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    std::vector<std::string> vecWords;
    try {
        vecWords = sensorctl::tokenise(fuzz::Input(p_pData, p_nSize).rest());
    } catch (const sensorctl::CommandError&) {
        return 0;
    }
    FUZZ_CHECK(sensorctl::tokenise(sensorctl::lineOfWords(vecWords)) == vecWords);

    const sensorctl::ParsedOptions stParsed = sensorctl::parseOptions(vecWords, nullptr);
    FUZZ_CHECK(stParsed.options.has_value() || !stParsed.strText.empty());
    FUZZ_CHECK(sensorctl::kAllOk == stParsed.nStatus || sensorctl::kUsage == stParsed.nStatus);
    return 0;
}
