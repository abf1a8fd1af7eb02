// Small files that nobody but this process may read or change: accounts and keys.
//
// A file belongs to the user of the process, has mode 0600 and lies in a folder that this user owns and nobody else may
// write to. Nothing follows symbolic links in the file or its folder. Writing is all or nothing: a sibling (NAME.new) is
// flushed and renamed over the old file, then the folder is flushed.
//
// Threads: any; two writers of one path take turns by a lock of the caller. Functions throw std::runtime_error with what
// is wrong and what to do about it; no text holds anything of a file's content. Paths are camera paths.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace camerad {

constexpr unsigned kForOwner = 0600;
constexpr unsigned kForReaders = 0644;  // of a certificate, which is no secret

struct PrivateFile {
    std::string strPath;  // camera path
    std::string strWhat;  // "the accounts file": for messages
    std::size_t nMostBytes = 65536;
    unsigned nMode = kForOwner;
};

// Nothing when there is no such file.
std::optional<std::string> readPrivateFile(const PrivateFile& p_stFile);

// Makes the folder, mode 0700, when it is not there.
void writePrivateFile(const PrivateFile& p_stFile, const std::string& p_strContent);

}  // namespace camerad
