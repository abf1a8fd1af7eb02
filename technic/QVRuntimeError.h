// The exception of the support templates.
#pragma once

#include <exception>
#include <string>
#include <utility>

class QVRuntimeError : public std::exception {
public:
    explicit QVRuntimeError(std::string p_strMessage) : m_strMessage(std::move(p_strMessage)) {}
    explicit QVRuntimeError(const char* p_szMessage) : m_strMessage(p_szMessage) {}

    const char* what() const noexcept override { return m_strMessage.c_str(); }

private:
    std::string m_strMessage;
};
