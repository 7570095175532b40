#include "inspect/check/digests.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "companion/ground/byte_text.h"
#include "crypto/sha_hash.h"

namespace tova_fw_builder {
namespace {

template <typename Hash>
Digests::Take hash_into(std::shared_ptr<Hash> hash) {
  return [hash](std::uint64_t, std::string_view bytes) {
    hash->update(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                 bytes.size());
  };
}

template <typename Hash>
std::string final_text(Hash& hash) {
  typename Hash::Digest digest{};
  hash.final(digest.data());
  return hexadecimal(
      {reinterpret_cast<const char*>(digest.data()), digest.size()});
}

// One who takes bytes: how far it is in its spans.
struct Taker {
  const std::vector<Span>& spans;
  Digests::Take take;
  std::size_t next = 0;

  // Hands on what of the piece it wants.
  void offer(std::uint64_t offset, std::string_view piece) {
    const std::uint64_t end = offset + piece.size();
    for (; next < spans.size(); ++next) {
      const Span& span = spans[next];
      const std::uint64_t from = std::max(span.offset, offset);
      const std::uint64_t to = std::min(span.offset + span.length, end);
      if (from < to) take(from, piece.substr(from - offset, to - from));
      if (span.offset + span.length > end) return;
    }
  }
};

}  // namespace

std::size_t Digests::add(Kind kind, const ByteSource& source,
                         std::vector<Span> spans) {
  const auto same = [&](const Wish& wish) {
    return !wish.take && wish.kind == kind && wish.source == &source &&
           std::ranges::equal(wish.spans, spans, [](Span a, Span b) {
             return a.offset == b.offset && a.length == b.length;
           });
  };
  const auto found = std::ranges::find_if(wishes_, same);
  if (found == wishes_.end()) {
    wishes_.push_back({kind, &source, std::move(spans), nullptr, ""});
    return wishes_.size() - 1;
  }
  return static_cast<std::size_t>(found - wishes_.begin());
}

void Digests::add(const ByteSource& source, Take take) {
  wishes_.push_back(
      {Kind::kSha256, &source, {{0, source.size()}}, std::move(take), ""});
}

void Digests::read() {
  std::vector<Wish*> left;
  for (Wish& wish : wishes_) left.push_back(&wish);
  while (!left.empty()) {
    const ByteSource* source = left.front()->source;
    const auto others = std::stable_partition(
        left.begin(), left.end(),
        [source](const Wish* wish) { return wish->source == source; });
    read_file(*source, {left.begin(), others});
    left.erase(left.begin(), others);
  }
}

void Digests::read_file(const ByteSource& source,
                        const std::vector<Wish*>& wishes) {
  std::vector<Taker> takers;
  std::vector<std::pair<Wish*, std::shared_ptr<Sha256Hash>>> short_ones;
  std::vector<std::pair<Wish*, std::shared_ptr<Sha384Hash>>> long_ones;
  Coverage wanted(source.size());
  for (Wish* wish : wishes) {
    for (const Span& span : wish->spans) wanted.take(span);
    if (wish->take) {
      takers.push_back({wish->spans, wish->take});
    } else if (wish->kind == Kind::kSha256) {
      short_ones.emplace_back(wish, std::make_shared<Sha256Hash>());
      takers.push_back({wish->spans, hash_into(short_ones.back().second)});
    } else {
      long_ones.emplace_back(wish, std::make_shared<Sha384Hash>());
      takers.push_back({wish->spans, hash_into(long_ones.back().second)});
    }
  }
  std::uint64_t offset = 0;
  const auto read_to = [&](std::uint64_t end) {
    source.pieces(offset, end - offset, [&](std::string_view piece) {
      for (Taker& taker : takers) taker.offer(offset, piece);
      offset += piece.size();
      return true;
    });
  };
  for (const Span& gap : wanted.gaps()) {
    read_to(gap.offset);
    offset = gap.offset + gap.length;
  }
  read_to(source.size());
  for (auto& [wish, hash] : short_ones) wish->text = final_text(*hash);
  for (auto& [wish, hash] : long_ones) wish->text = final_text(*hash);
}

}  // namespace tova_fw_builder
