// outside_keys/openssl_start.h
#pragma once

namespace tova_fw_builder {

// To be called ahead of whatever else of OpenSSL. Its memory is wiped from here
// on before it is given back: of the numbers and texts of private keys that go
// through it, OpenSSL itself wipes but a part.
void start_openssl();

}  // namespace tova_fw_builder
