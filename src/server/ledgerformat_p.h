#pragma once

// The numbers of the ledger format; docs/ledger-format.md tells the whole of it.
namespace ts::pm::ledgerformat {

constexpr char Magic[] = "ldgr";
constexpr int MajorVersion = 1;
constexpr int MinorVersion = 0;

constexpr char IssuerTag[] = ".iss";
constexpr char KeywordTag[] = ".kwd";
constexpr char PackageTag[] = ".pkg";
constexpr char LinkTag[] = ".lnk";

// In bytes.
constexpr int TagSize = 4;
constexpr int HeaderSize = 38;
constexpr int SectionHeadSize = 8;         ///< tag and size, not counted by the size
constexpr int MinimumSize = 88;            ///< of a document with four empty sections
constexpr int LargestDocument = 268435456; ///< that is fetched from a server
constexpr int SignatureSize = 64;
constexpr int DigestSize = 28;
constexpr int LinkSize = 10;

// Keywords, their translations and values together. Some take 3 bytes of a document and 16 times as many in
// memory, and no signature covers them. Real catalogues have less than a tenth of it.
constexpr int MostPartsOfKeywords = 8388608;

// The least that a whole record of the kind takes, with all its texts empty.
constexpr int MinimumPackageSize = 74;
constexpr int MinimumFileSize = 30;
constexpr int MinimumStringSize = 2;

} // namespace ts::pm::ledgerformat
