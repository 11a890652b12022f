// Fingerprints of data.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;  // of OpenSSL

namespace wqstat {

/** SHA-256 of bytes that come block by block. @throws CannotAnalyse, from any call, when it cannot be computed. */
class Sha256 {
public:
    Sha256();

    void add(std::string_view bytes);

    /** Of all that has come so far, in 64 hexadecimal digits. */
    std::string text() const;

private:
    std::shared_ptr<evp_md_ctx_st> context;
};

/** SHA-256 of what the path holds. @throws CannotAnalyse when it cannot be read. */
std::string sha256Of(const std::string& path, const std::string& shownName);

}  // namespace wqstat
