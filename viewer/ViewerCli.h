// The command line of lumofe-view.
#ifndef LUMOFE_VIEWER_VIEWER_CLI_H
#define LUMOFE_VIEWER_VIEWER_CLI_H

namespace lumofe::viewer {

// Runs the viewer; returns its exit status: 0, or 2 after one line on standard error that says what
// was wrong and what to do.
int runViewer(int argc, const char* const* argv);

} // namespace lumofe::viewer

#endif
