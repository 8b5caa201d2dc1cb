#pragma once

#include <cstddef>
#include <cstdint>

// The bodies of the fuzz targets, as plain functions: the clang build wraps each in a
// libFuzzer entry point (fuzz/<target>.cpp), and the ordinary test suite replays every
// seed corpus through the same function. A target throws FuzzCheckFailed when an
// invariant does not hold; anything else that goes wrong is a crash.
namespace tvrx::fuzz {

// Arbitrary bytes through every claim text encoding and the notation codec.
int fuzzEncodings(const std::uint8_t* data, std::size_t size);

// Arbitrary bytes as a payer response, decoded by clsClaimResponse.BuildResponse as a claim
// answer and as a reversal answer, each twice on the same object.
int fuzzBuildResponse(const std::uint8_t* data, std::size_t size);

}  // namespace tvrx::fuzz
