// The raw RSA operations. Montgomery arithmetic needs an odd modulus; a damaged
// key may hold an even one, which is no error of its own and goes by division.
#include "crypto/zels_rsa.h"

#include <algorithm>
#include <cstddef>

#include "crypto/internal/big_num_context.h"
#include "crypto/internal/modular_power.h"
#include "crypto/zels_bignum.h"

namespace tova_fw_builder {

namespace {

constexpr ContextTag kPublicKeyTag = {'0', 'A', 'S', 'R'};
constexpr ContextTag kPrivateKeyTag = {'1', 'A', 'S', 'R'};
// A private key with its prime factors. Nothing makes one, but the private
// operation knows it: N and d stand in it all the same, and serve.
constexpr ContextTag kPrivateCrtKeyTag = {'2', 'A', 'S', 'R'};

// How a key stands inside its caller's buffer; the arrays follow there.
struct RsaKey {
  ContextTag tag;
  std::int32_t modulus_bound;  // bits
  std::int32_t exponent_bound;
  std::int32_t modulus_bits;  // 0 until a key is set
  std::int32_t exponent_bits;
  Digit* exponent;  // one zero digit longer than the bound
  Digit* modulus;
  Digit* engine_storage;
  Montgomery engine;  // for an odd modulus
};

constexpr std::int32_t kFewestBits = 8;
constexpr std::int32_t kMostBits = 16384;

bool is_odd(const RsaKey& key) { return (key.modulus[0] & 1) != 0; }

std::int32_t to_size(std::size_t fixed, std::size_t digits) {
  return static_cast<std::int32_t>(fixed + digits * sizeof(Digit)) +
         kContextSpare;
}

// The exponent has a digit more, where its topmost window may reach.
std::int32_t key_size(std::int32_t modulus_bits, std::int32_t exponent_bits) {
  return to_size(sizeof(RsaKey), digits_for_bits(exponent_bits) + 1 +
                                     digits_for_bits(modulus_bits) +
                                     montgomery_storage(modulus_bits));
}

ZelStatus check_bounds(std::int32_t modulus_bits, std::int32_t exponent_bits) {
  if (modulus_bits < kFewestBits || modulus_bits > kMostBits) {
    return zelStsNotSupportedModeErr;
  }
  if (exponent_bits < 1 || exponent_bits > modulus_bits) return zelStsBadArgErr;
  return zelStsNoErr;
}

ZelStatus get_size(std::int32_t modulus_bits, std::int32_t exponent_bits,
                   std::int32_t* size) {
  if (size == nullptr) return zelStsNullPtrErr;
  const ZelStatus status = check_bounds(modulus_bits, exponent_bits);
  if (status != zelStsNoErr) return status;
  *size = key_size(modulus_bits, exponent_bits);
  return zelStsNoErr;
}

ZelStatus init(std::int32_t modulus_bits, std::int32_t exponent_bits,
               std::uint8_t* context, std::int32_t size,
               const ContextTag& tag) {
  if (context == nullptr) return zelStsNullPtrErr;
  const ZelStatus status = check_bounds(modulus_bits, exponent_bits);
  if (status != zelStsNoErr) return status;
  if (size < key_size(modulus_bits, exponent_bits)) return zelStsMemAllocErr;

  auto* key = context_in<RsaKey>(context);
  auto* exponent = reinterpret_cast<Digit*>(key + 1);
  Digit* modulus = exponent + digits_for_bits(exponent_bits) + 1;
  *key = {.tag = tag,
          .modulus_bound = modulus_bits,
          .exponent_bound = exponent_bits,
          .modulus_bits = 0,
          .exponent_bits = 0,
          .exponent = exponent,
          .modulus = modulus,
          .engine_storage = modulus + digits_for_bits(modulus_bits),
          .engine = {}};
  return zelStsNoErr;
}

ZelStatus check_key_value(std::uint8_t* context, std::int32_t bound) {
  if (context == nullptr) return zelStsNullPtrErr;
  const auto* number = context_in<BigNum>(context);
  if (!has_tag(number, kBigNumTag)) return zelStsContextMatchErr;
  if (is_zero(*number) || number->sign != kPositive) return zelStsOutOfRangeErr;
  if (bit_size(*number) > bound) return zelStsSizeErr;
  return zelStsNoErr;
}

ZelStatus set_key(std::uint8_t* modulus, std::uint8_t* exponent,
                  std::uint8_t* context, const ContextTag& tag) {
  if (context == nullptr) return zelStsNullPtrErr;
  auto* key = context_in<RsaKey>(context);
  if (!has_tag(key, tag)) return zelStsContextMatchErr;
  ZelStatus status = check_key_value(modulus, key->modulus_bound);
  if (status != zelStsNoErr) return status;
  status = check_key_value(exponent, key->exponent_bound);
  if (status != zelStsNoErr) return status;

  // From here on nothing fails: a key that is refused leaves the one before.
  const auto* n = context_in<BigNum>(modulus);
  const auto* e = context_in<BigNum>(exponent);
  std::fill_n(key->exponent, digits_for_bits(key->exponent_bound) + 1, 0);
  std::copy_n(e->digits, e->size, key->exponent);
  // Old digits above it are never read, as its bits tell where it ends.
  std::copy_n(n->digits, n->size, key->modulus);
  key->modulus_bits = bit_size(*n);
  key->exponent_bits = bit_size(*e);
  if (is_odd(*key)) {
    key->engine =
        prepare_montgomery(key->modulus, key->modulus_bits,
                           choose_limb(key->modulus_bits), key->engine_storage);
  }
  return zelStsNoErr;
}

bool is_private(const RsaKey* key) {
  return has_tag(key, kPrivateKeyTag) || has_tag(key, kPrivateCrtKeyTag);
}

// Digits of work buffer: the input in full width, the result, and what the
// power needs.
std::size_t work_digits(const RsaKey& key) {
  const std::size_t n = digits_for_bits(key.modulus_bits);
  if (!is_odd(key)) return 2 * n + divided_power_work(n);
  return 2 * n + (is_private(&key)
                      ? secret_power_work(key.engine, key.exponent_bits)
                      : public_power_work(key.engine));
}

ZelStatus get_buffer_size(std::int32_t* size, std::uint8_t* context,
                          const ContextTag& tag) {
  if (context == nullptr) return zelStsNullPtrErr;
  const auto* key = context_in<RsaKey>(context);
  if (!has_tag(key, tag)) return zelStsContextMatchErr;
  if (key->modulus_bits == 0) return zelStsIncompleteContextErr;
  if (size == nullptr) return zelStsNullPtrErr;
  *size = to_size(0, work_digits(*key));
  return zelStsNoErr;
}

// May branch: what is compared, a padded digest or a signature, is no secret.
bool is_below_modulus(const BigNum& number, const RsaKey& key) {
  const std::size_t digits = digits_for_bits(key.modulus_bits);
  if (number.size != digits) return number.size < digits;
  return is_below(number.digits, key.modulus, digits);
}

ZelStatus check_operands(std::uint8_t* input, std::uint8_t* output,
                         const RsaKey& key) {
  if (key.modulus_bits == 0) return zelStsIncompleteContextErr;
  if (input == nullptr) return zelStsNullPtrErr;
  const auto* in = context_in<BigNum>(input);
  if (!has_tag(in, kBigNumTag)) return zelStsContextMatchErr;
  if (in->sign != kPositive) return zelStsOutOfRangeErr;
  if (!is_below_modulus(*in, key)) return zelStsOutOfRangeErr;
  if (output == nullptr) return zelStsNullPtrErr;
  const auto* out = context_in<BigNum>(output);
  if (!has_tag(out, kBigNumTag)) return zelStsContextMatchErr;
  if (out->room < digits_for_bits(key.modulus_bits)) return zelStsSizeErr;
  return zelStsNoErr;
}

// The size is found without a branch: the result still hangs on the secret.
void store_result(const Digit* result, std::size_t digits, BigNum& out) {
  std::fill(std::copy_n(result, digits, out.digits), out.digits + out.room + 1,
            0);
  Digit size = 1;
  for (std::size_t i = 1; i < digits; ++i) {
    const Digit keep = mask_if_zero(result[i]);
    size = (size & keep) | ((i + 1) & ~keep);
  }
  out.size = static_cast<std::uint32_t>(size);
  out.sign = kPositive;
}

void exponentiate(const RsaKey& key, const BigNum& in, BigNum& out,
                  std::uint8_t* work) {
  const std::size_t digits = digits_for_bits(key.modulus_bits);
  auto* base = context_in<Digit>(work);
  Digit* result = base + digits;
  Digit* scratch = result + digits;
  std::fill(std::copy_n(in.digits, in.size, base), result, 0);
  if (!is_odd(key)) {
    divided_power(key.modulus, digits, result, base, key.exponent,
                  key.exponent_bits, scratch);
  } else if (is_private(&key)) {
    secret_power(key.engine, result, base, key.exponent, key.exponent_bits,
                 scratch);
  } else {
    public_power(key.engine, result, base, key.exponent, key.exponent_bits,
                 scratch);
  }
  store_result(result, digits, out);
}

ZelStatus operate(std::uint8_t* input, std::uint8_t* output, const RsaKey& key,
                  std::uint8_t* work) {
  const ZelStatus status = check_operands(input, output, key);
  if (status != zelStsNoErr) return status;
  exponentiate(key, *context_in<BigNum>(input), *context_in<BigNum>(output),
               work);
  return zelStsNoErr;
}

}  // namespace

ZelStatus zelsRSA_GetSizePublicKey(std::int32_t modulus_bits,
                                   std::int32_t exponent_bits,
                                   std::int32_t* size) {
  return get_size(modulus_bits, exponent_bits, size);
}

ZelStatus zelsRSA_GetSizePrivateKey(std::int32_t modulus_bits,
                                    std::int32_t exponent_bits,
                                    std::int32_t* size) {
  return get_size(modulus_bits, exponent_bits, size);
}

ZelStatus zelsRSA_InitPublicKey(std::int32_t modulus_bits,
                                std::int32_t exponent_bits,
                                std::uint8_t* context, std::int32_t size) {
  return init(modulus_bits, exponent_bits, context, size, kPublicKeyTag);
}

ZelStatus zelsRSA_InitPrivateKey(std::int32_t modulus_bits,
                                 std::int32_t exponent_bits,
                                 std::uint8_t* context, std::int32_t size) {
  return init(modulus_bits, exponent_bits, context, size, kPrivateKeyTag);
}

ZelStatus zelsRSA_SetPublicKey(std::uint8_t* modulus, std::uint8_t* exponent,
                               std::uint8_t* context) {
  return set_key(modulus, exponent, context, kPublicKeyTag);
}

ZelStatus zelsRSA_SetPrivateKey(std::uint8_t* modulus, std::uint8_t* exponent,
                                std::uint8_t* context) {
  return set_key(modulus, exponent, context, kPrivateKeyTag);
}

ZelStatus zelsRSA_GetBufferSizePublicKey(std::int32_t* size,
                                         std::uint8_t* context) {
  return get_buffer_size(size, context, kPublicKeyTag);
}

ZelStatus zelsRSA_GetBufferSizePrivateKey(std::int32_t* size,
                                          std::uint8_t* context) {
  return get_buffer_size(size, context, kPrivateKeyTag);
}

ZelStatus zelsRSAEncrypt(std::uint8_t* input, std::uint8_t* output,
                         std::uint8_t* context, std::uint8_t* work) {
  if (context == nullptr || work == nullptr) return zelStsNullPtrErr;
  const auto* key = context_in<RsaKey>(context);
  if (!has_tag(key, kPublicKeyTag)) return zelStsContextMatchErr;
  return operate(input, output, *key, work);
}

ZelStatus zelsRSADecrypt(std::uint8_t* input, std::uint8_t* output,
                         std::uint8_t* context, std::uint8_t* work) {
  if (context == nullptr || work == nullptr) return zelStsNullPtrErr;
  const auto* key = context_in<RsaKey>(context);
  if (!is_private(key)) return zelStsContextMatchErr;
  return operate(input, output, *key, work);
}

}  // namespace tova_fw_builder
