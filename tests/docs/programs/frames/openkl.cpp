// The program in which the C++ of docs/openkl.md stands. It fails, by what it prints, where nothing
// was rendered.

#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"
#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <utility>
#include <vector>

int main() {
    // The statements of a page stand here.

    result.ReportToConsole(nullptr);
    if (*std::max_element(pixels.begin(), pixels.end()) <= 0.0f) {
        std::puts("the picture is black");
    }
}
