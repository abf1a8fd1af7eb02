#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/DocumentResult.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

#include <filesystem>
#include <fstream>

namespace sensorctl {

namespace {

const char kLanguageGroup[] = "Languages of the user interface";
constexpr std::size_t kWordsOfOne = 3;             // of a language: id and two files
constexpr std::size_t kLargestFile = 1024 * 1024;  // bytes; a document of texts has a few thousand

std::string documentOf(const std::string& p_strPath) {
    std::error_code error;
    const bool regular = std::filesystem::is_regular_file(p_strPath, error);
    std::ifstream file(p_strPath, std::ios::binary);
    if (!regular || !file) {
        throw CommandError("the file " + quoted(p_strPath) + " cannot be read");
    }
    std::string text(kLargestFile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLargestFile) {
        throw CommandError("the file " + quoted(p_strPath) + " is too large for a document of a language (1 MiB)");
    }
    return text;
}

std::vector<LanguageDocuments> parseLanguages(const Words& p_vecWords) {
    std::vector<LanguageDocuments> documents;
    if (1 == p_vecWords.size() && "none" == lowerCase(p_vecWords[0])) {
        return documents;
    }
    if (0 != p_vecWords.size() % kWordsOfOne) {
        throw CommandError(
            "a language is an id, its language file and its common file; usage: languages none | ID FILE FILE...");
    }
    for (std::size_t i = 0; i < p_vecWords.size(); i += kWordsOfOne) {
        documents.push_back(
            {parseInt(p_vecWords[i], "ID"), documentOf(p_vecWords[i + 1]), documentOf(p_vecWords[i + 2])});
    }
    return documents;
}

Result languages(Session& p_objSession, const Words& p_vecWords) {
    const std::vector<LanguageDocuments> documents = parseLanguages(p_vecWords);
    Json ids = Json::array();
    for (const LanguageDocuments& entry : documents) {
        ids.push_back(entry.m_nLanguageId);
    }
    const Json data = {{"languages", ids}};
    if (!p_objSession.controller().setLanguageDocuments(documents)) {
        return Result::failed("setLanguageDocuments returned false: a language is there twice, or a file is no text",
                              data);
    }
    return {true, "", data, {}};
}

Result common(Session& p_objSession, const Words& p_vecWords) {
    return documentResult(p_objSession.controller().getUICommonFile(parseInt(p_vecWords[0], "LANGUAGE")));
}

Result language(Session& p_objSession, const Words& p_vecWords) {
    return documentResult(p_objSession.controller().getUILanguageFile(parseInt(p_vecWords[0], "LANGUAGE")));
}

}  // namespace

void addLanguageCommands(CommandTable& p_objTable) {
    p_objTable.add({"languages", "none | ID FILE FILE...",
                    "hand over the language file and the common file of each language, in place of those before",
                    kLanguageGroup, 1, kAnyNumber, languages});
    p_objTable.add({"commonFile", "LANGUAGE", "the common file of a language", kLanguageGroup, 1, 1, common});
    p_objTable.add({"languageFile", "LANGUAGE", "the language file of a language", kLanguageGroup, 1, 1, language});
}

}  // namespace sensorctl
