// The general print form.
#include "algebra/matrix.h"
#include "algebra/result_arguments.h"

namespace orv {

void Matrix::printElements(std::FILE* file) const {
    for (int j = 0; j < Rows(); ++j) {
        for (int i = 0; i < Cols(); ++i) {
            put(file, " %8.4f", double{Get(i, j)});
        }
        put(file, "%s", "\n");
    }
    put(file, "%s", "\n");
}

void Matrix::PrintTo(std::FILE* file) const {
    // quirk: shared-print-names
    put(file, "Symmetric Matrix(%d,%d)\n", Rows(), Cols());
    printElements(file);
}

void Matrix::Print() const {
    PrintTo(nullptr);
    flushText();
}

}  // namespace orv
