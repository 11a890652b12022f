#include "sha256.h"

#include "command_line/failure.h"

#include <openssl/evp.h>

#include <array>
#include <cstddef>
#include <fstream>

namespace wqstat {

namespace {

std::shared_ptr<EVP_MD_CTX> newContext() { return {EVP_MD_CTX_new(), EVP_MD_CTX_free}; }

void require(bool isDone)
{
    if (!isDone) throw CannotAnalyse("SHA-256 cannot be computed");
}

}  // namespace

Sha256::Sha256() : context(newContext()) { require(context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1); }

void Sha256::add(std::string_view bytes) { require(EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) == 1); }

std::string Sha256::text() const
{
    const std::shared_ptr<EVP_MD_CTX> ended = newContext();  // more may come to the other one
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned int length = 0;
    require(ended && EVP_MD_CTX_copy_ex(ended.get(), context.get()) == 1 && EVP_DigestFinal_ex(ended.get(), digest.data(), &length) == 1);
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < length; ++i) text += {digits[digest[i] / 16], digits[digest[i] % 16]};
    return text;
}

std::string sha256Of(const std::string& path, const std::string& shownName)
{
    std::ifstream file(path, std::ios_base::binary);
    Sha256 sum;
    std::array<char, 1 << 16> buffer;
    while (file && (file.read(buffer.data(), buffer.size()) || file.gcount() > 0))
        sum.add({buffer.data(), static_cast<std::size_t>(file.gcount())});
    if (!file.eof() || file.bad()) throw CannotAnalyse(shownName + ": cannot be read again, for its SHA-256");
    return sum.text();
}

}  // namespace wqstat
