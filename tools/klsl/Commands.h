#pragma once

namespace Tolen::Klsl {

struct Options;

/// Each runs one command. @return the exit status: 0, or 1 when there were errors
int Check(const Options& options);
int PrintClass(const Options& options);
int PrintScene(const Options& options);
int Graph(const Options& options);
int FormatFiles(const Options& options);
int Document(const Options& options);

} // namespace Tolen::Klsl
