#include "MiddlewareGrpc/Support.h"

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <limits>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TPacker.h"
#include "NQ_TTime.h"
#include "NQ_TURL.h"

namespace grpc_test {

std::vector<NQ_TAny> Values() {
  using TLimits = std::numeric_limits<double>;
  const char16_t lone[] = {0xD83D, u'a', 0xDE00, 0, 0xD83D, 0xDE00, 0xDC00, 0xD800};
  NQ_TDict dict;
  for (const char* key : {"z", "", "a", "\xF0\x9F\x98\x80"}) dict.Add(key, NQ_TAny(key));
  dict.Add(NQ_TString(lone, 1), NQ_TAny(NQ_TAny::Illegal()));
  NQ_TTree tree;
  for (int i = 20; i > 0; --i) tree.Add(NQ_TString::Format("%d", i), NQ_TAny(i));
  tree.Add("inner", NQ_TTree(tree));
  NQ_TArray array;
  NQ_TList list;
  for (const NQ_TAny& value : {NQ_TAny(), NQ_TAny::Illegal(), NQ_TAny(dict), NQ_TAny(tree), NQ_TAny(NQ_TArray())}) {
    array.Add(value);
    list.Add(NQ_TAny(value));
  }
  constexpr int kLargest = std::numeric_limits<int>::max();
  std::vector<NQ_TAny> values;
  for (const NQ_TAny& value : {NQ_TAny(), NQ_TAny::Illegal(), NQ_TAny(true), NQ_TAny(false)}) values.push_back(value);
  for (const int number : {0, -1, kLargest, -kLargest - 1}) values.emplace_back(number);
  for (const double number : {0.0, 1.0 / 3, TLimits::quiet_NaN(), TLimits::infinity(), TLimits::denorm_min()})
    for (const double either : {number, -number}) values.emplace_back(either);
  const std::string large(100'000, 'x');
  for (const NQ_TString& text : {S(""), S("Lefèvre 印刷 😀"), NQ_TString(lone, 8), NQ_TString(lone + 6, 2), S(large)})
    values.emplace_back(text);
  for (const double time : {1.5e12, -TLimits::infinity()}) values.emplace_back(NQ_TTime::FromMilliseconds(time));
  for (const char* url : {"", "file://srv/a%20b/ç.pdf", "just/a/path"}) values.emplace_back(NQ_TURL(S(url)));
  for (const NQ_TAny& value : {NQ_TAny(NQ_TDict()), NQ_TAny(dict), NQ_TAny(NQ_TTree()), NQ_TAny(tree), NQ_TAny(array),
                               NQ_TAny(NQ_TList()), NQ_TAny(list), NQ_TAny(NQ_TInterval(-0.25))})
    values.push_back(value);
  values.emplace_back(NQ_ENoMatchingTreeKey("an exception", dict));
  for (const NQ_TAny& value : values) array.Add(value);
  values.emplace_back(array);
  return values;
}

NQ_TAny Nested(int depth) {
  NQ_TAny value(1);
  for (; depth > 1; --depth) {
    NQ_TArray array;
    array.Add(std::move(value));
    value = NQ_TAny(std::move(array));
  }
  return value;
}

std::string Packed(const NQ_TAny& value) {
  NQ_TPacker packer;
  packer.PackAny(value);
  return packer.Bytes();
}

namespace {

template <class Write>
std::string Pem(Write write) {
  const std::unique_ptr<BIO, decltype(&BIO_free)> out(BIO_new(BIO_s_mem()), &BIO_free);
  write(out.get());
  char* text = nullptr;
  const auto length = BIO_get_mem_data(out.get(), &text);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace

NQM_TGrpcCredentials NewCertificate() {
  const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
  const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), &X509_free);
  X509_set_version(certificate.get(), 2);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_set_pubkey(certificate.get(), key.get());
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("localhost"), -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> host(
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "DNS:localhost"), &X509_EXTENSION_free);
  X509_add_ext(certificate.get(), host.get(), -1);
  X509_sign(certificate.get(), key.get(), EVP_sha256());
  NQM_TGrpcCredentials made;
  made.certificateChain = Pem([&](BIO* out) { PEM_write_bio_X509(out, certificate.get()); });
  made.rootCertificates = made.certificateChain;
  made.privateKey =
      Pem([&](BIO* out) { PEM_write_bio_PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr, nullptr); });
  return made;
}

}  // namespace grpc_test
