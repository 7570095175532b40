// tests/crypto/rsa_sample.h
// A key of 2048 bits made by OpenSSL, and its signature of the text "manifest"
// (openssl dgst -sha256 -sign). Big-endian hexadecimal; the exponent is 65537.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tova_fw_builder {

// Big-endian hexadecimal as `length` bytes, least significant byte first.
inline std::vector<std::uint8_t> little_endian(std::string hex,
                                               std::size_t length) {
  hex.insert(0, 2 * length - hex.size(), '0');
  std::vector<std::uint8_t> bytes(length);
  for (std::size_t i = 0; i < length; ++i) {
    bytes[length - 1 - i] =
        static_cast<std::uint8_t>(std::stoi(hex.substr(2 * i, 2), nullptr, 16));
  }
  return bytes;
}

inline constexpr char kSampleModulus[] =
    "bf1167594fa3c63b18be29e430d7f052f44fbf7c2c846c7170f9ef1d40964c9d"
    "5567f52e6915100373c9edaf9109f30eaadbfcf1a287ac711cd9dd6332cd91ce"
    "4405503b1fa77fac2f43b11989b25307e41b98c1eb4bfbe9cf04af5d13dfb188"
    "85319437467ad70a21ed2471857414641c2c315d969f00a268f21629c1b2f876"
    "2d831f164c8722f580df9485d4eb78d39420590f4e36603e1d9d7fe8718c3a51"
    "e8b378f6a8ddc57b3f31682f093c72b46935d6e1ecf1273fdc7b686979615838"
    "3dc4744c575b46081d9ee76106a99f0b187c3950c105e1ec0c0c88db5b8681ba"
    "17ee69fa2fff4e49eba50e30e8c9c148f4a1d707683e0416a4fac14a10d6da45";

inline constexpr char kSamplePrivateExponent[] =
    "0233ade47857bb92d645e8bf2db5eb59d5616ee43c32197ad431b928f5e3d585"
    "b1a4854d8fddf3858aa9ced0a963fb3655cf3bb2c02bfe977e1cdfa183461db2"
    "4a13e2990fd4131355a71acd1fca5b8d197a9cefcd299ec152c6abcbaf8d3223"
    "4fdfa2a4e16dcc791c2b7ab24936ad7e7ad9a28700d39bc3036118d2c9dde961"
    "9425093fedbcf9ceac1c3a2c70a85146aa034ae9537e68ea67c94b5127c16b10"
    "16183ac78becd5c38a445c7c1b7eb1ad8b0d14e45735c296e408f421edceefaa"
    "cdd48998d0f2436af2b48de0ae2a688db1e4fe3f1cb45f2378bb80b620e6a50f"
    "bf21f3e0be74bf7167144ca78ba09dadfb40cba8086d61e60427b50d655f4131";

inline constexpr char kSampleSignature[] =
    "7ac84012655ad5094fce71fc97534847b14e997799dc44ff5c4c98668074c104"
    "37099b3ba47dbe3ddff984ed0cf29834b118424437d556526dd247c7693d00e4"
    "f1d2067f9550b0a8a5cc1ef9804e7140ff557c7ce9580797c293efaecea1bdda"
    "6eae0020ee47f4fb5679d070fb7b97964ca5d2932b16141af9bc72f7a79716bd"
    "fc595db3aeb877ef56bd9248bd5782a82a9c782250156418024776bd8073fa35"
    "9f9c6db0bf7c87591a057b36a18196b4a8436d4c6d80fa4cc7b9731e024300d4"
    "8533aa4b89fed403a096553c1a82f15b2fdf83f999fd320cd674f8f5db7d4aa9"
    "17af7af5c0da5bfb8dfcec6e6d403cf48c19e92dc79c0e178b83375362211818";

// printf manifest | sha256sum
inline constexpr char kSampleDigest[] =
    "05b3abf2579a5eb66403cd78be557fd860633a1fe2103c7642030defe32c657f";

}  // namespace tova_fw_builder
