#pragma once

namespace browser {

struct BrowserOptions;

/**
 * Writes pictures of all views in all languages and scales into the directory that \a options name. Language
 * and scale belong to a whole process, so each combination is a process of its own, of this same program.
 *
 * Needs an application object. Returns the exit code of the program: 0 if every picture has been written.
 */
[[nodiscard]] int drawAllVariants(const BrowserOptions &options);

} // namespace browser
