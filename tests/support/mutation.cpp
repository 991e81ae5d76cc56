// SPDX-License-Identifier: Apache-2.0
#include "support/mutation.h"

#include <cstddef>

namespace mctest {

namespace {

// Not one of the standard's distributions, whose results differ by library.
std::size_t Below(std::size_t n, std::mt19937_64& engine) {
  return n == 0 ? 0 : engine() % n;
}

/// A piece from one tag to another.
struct Piece {
  std::size_t begin;
  std::size_t length;
};

Piece AnyPiece(const std::string& document, std::mt19937_64& engine) {
  const std::size_t begin = document.find('<', Below(document.size(), engine));
  if (begin == std::string::npos) return {document.size(), 0};
  std::size_t end = begin;
  for (std::size_t tags = 1 + Below(6, engine); tags > 0 && end != std::string::npos; --tags) {
    end = document.find('<', end + 1);
  }
  return {begin, (end == std::string::npos ? document.size() : end) - begin};
}

void Mutate(std::string& document, std::mt19937_64& engine) {
  static const char kBytes[] = "<>/\"'=&;!?-[]# ax0\n\x01\x80\xc3\xff";
  const Piece piece = AnyPiece(document, engine);
  const std::string text = document.substr(piece.begin, piece.length);
  switch (engine() % 6) {
    case 0:
      document.erase(piece.begin, piece.length);
      break;
    case 1:
      document.insert(piece.begin, text);
      break;
    case 2:
      document.erase(piece.begin, piece.length);
      document.insert(AnyPiece(document, engine).begin, text);
      break;
    case 3:
      document.resize(Below(document.size(), engine));
      break;
    case 4:
      document.insert(Below(document.size(), engine), 1, kBytes[Below(sizeof kBytes, engine)]);
      break;
    default:
      if (document.empty()) break;
      document[Below(document.size(), engine)] = kBytes[Below(sizeof kBytes, engine)];
  }
}

}  // namespace

std::string Mutated(std::string document, std::mt19937_64& engine) {
  for (std::size_t changes = 1 + Below(4, engine); changes > 0; --changes) {
    Mutate(document, engine);
  }
  return document;
}

}  // namespace mctest
