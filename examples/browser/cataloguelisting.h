#pragma once

namespace browser {

struct BrowserOptions;

/**
 * Prints all packages of the catalogues and package servers of \a options to the standard output, as a table
 * of id, type, title and categories in the order of the index. Long texts are cut off, and characters that
 * cannot be seen left out. An empty catalogue is told on the standard error output.
 *
 * Waits until translation packages have been installed, so that titles are texts. Needs an application
 * object. Returns the exit code of the program: 0, or 1 with a message on the standard error output if a
 * directory is missing, a server gives no packages, or the catalogue cannot be read in time.
 */
[[nodiscard]] int listCatalogue(const BrowserOptions &options);

} // namespace browser
