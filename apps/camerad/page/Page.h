// The page of the camera: files that are built into the program, and the routes that serve them.
//
// Functions without state; the files are constants. tools/build-page makes them.
#pragma once

#include "apps/camerad/http/Http.h"
#include "apps/camerad/http/Router.h"

#include <string>
#include <string_view>
#include <vector>

namespace camerad {

// What a browser lets a page of this program do: load from the camera itself, and nothing else.
extern const char kPagePolicy[];

struct PageBytes {
    const unsigned char* pBytes = nullptr;
    std::size_t nSize = 0;

    std::string text() const { return {reinterpret_cast<const char*>(pBytes), nSize}; }
};

struct PageFile {
    const char* szName = nullptr;  // "index.html"
    const char* szType = nullptr;
    const char* szTag = nullptr;  // another for each content, the same for the same content
    PageBytes stPlain;
    PageBytes stPacked;  // by gzip
};

const std::vector<PageFile>& pageFiles();

// What a client takes of a file, by its header Accept-Encoding; an empty one stands for no header.
enum class Encoding { Plain, Packed, Neither };
Encoding encodingFor(const std::string& p_strAcceptEncoding);

// Whether If-None-Match names the tag, which comes without its quotation marks.
bool isTagAmong(const std::string& p_strIfNoneMatch, const std::string& p_strTag);

// Plain or packed as the client takes it, and without a body when the client has it already.
HttpResponse servePageFile(const PageFile& p_stFile, const HttpRequest& p_stRequest);

// Adds GET / and a route for each file, for everybody: the page asks for the login itself.
void addPage(Router& p_objRouter);

}  // namespace camerad
