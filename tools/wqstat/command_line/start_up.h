// What has to be right before anything else happens.
#pragma once

namespace wqstat {

/**
 * Opens the standard streams that the caller has closed, so that no file of the program's takes the place of one and swallows a report:
 * what is opened there can be neither read nor written, as a closed stream. Then makes sure that there is memory enough to begin, and to
 * say later that there is not enough. Where either fails the program ends with status 1, and one line if possible. From then on a write
 * beyond the limit of file sizes fails as one to a full disk does, where its signal would end the program and leave an unfinished file.
 * To be called first in main(); where the system allows it has been called already, before the libraries made their own objects.
 */
void startUp();

/** What is said when memory runs out. */
constexpr const char* noMemory = "there is not enough memory";

}  // namespace wqstat
