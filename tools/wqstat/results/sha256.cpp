#include "sha256.h"

#include "command_line/failure.h"

#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <memory>

namespace wqstat {

std::string sha256Of(const std::string& path, const std::string& shownName)
{
    const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) throw CannotAnalyse("SHA-256 cannot be computed");
    std::ifstream file(path, std::ios_base::binary);
    if (!file) throw CannotAnalyse(shownName + ": cannot be read again, for its SHA-256");
    std::array<char, 1 << 16> buffer;
    while (file.read(buffer.data(), buffer.size()) || file.gcount() > 0)
        EVP_DigestUpdate(context.get(), buffer.data(), static_cast<std::size_t>(file.gcount()));
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned int length = 0;
    if (file.bad() || EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1)
        throw CannotAnalyse(shownName + ": cannot be read again, for its SHA-256");
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < length; ++i) text += {digits[digest[i] / 16], digits[digest[i] % 16]};
    return text;
}

}  // namespace wqstat
