#include "solvers/linear_solver_list.h"

#include <algorithm>
#include <cstddef>

#include "base/text_output.h"
#include "solvers/solver_catalogue.h"

namespace orv {

namespace {

std::size_t room(int capacity) {
    return static_cast<std::size_t>(std::max(capacity, 0));
}

}  // namespace

LinearSolverList::LinearSolverList(int capacity, int groupCapacity)
    : capacity_(capacity),
      descriptions_(room(capacity)),
      names_(room(capacity)),
      groupOf_(room(capacity), -1),
      groupCapacity_(groupCapacity),
      groupNames_(room(groupCapacity)) {
    for (const char* const group : kSolverGroups) {
        AddGroup(group);
    }
    for (const SolverRecord& solver : kSolvers) {
        AddSolver(solver.name, solver.description, solver.group);
    }
}

LinearSolverList::~LinearSolverList() = default;

void LinearSolverList::AddGroup(const char* name) {
    if (groupCount_ >= groupCapacity_) {
        return;
    }
    groupNames_[static_cast<std::size_t>(groupCount_)] = name;
    ++groupCount_;
}

void LinearSolverList::AddSolver(const char* name, const char* description, int group) {
    if (count_ >= capacity_) {
        return;
    }
    const std::size_t id = static_cast<std::size_t>(count_);
    groupOf_[id] = group;
    names_[id] = name;
    descriptions_[id] = description;
    ++count_;
}

std::unique_ptr<LinearSolver> LinearSolverList::Create(int id, int maxIter, int m, double tol) {
    if (id < 0 || id >= kSolverCount) {
        return nullptr;
    }
    const SolverSettings settings{maxIter, m, tol};
    if (isCombinedSolver(id)) {
        return makeCombinedSolver(id, settings, kInnerById);
    }
    return makePlainSolver(id, settings);
}

std::unique_ptr<LinearSolver> LinearSolverList::CreateCombined(const char* name, int maxIter,
                                                               int l, int innerMaxIter,
                                                               int innerM, double tol) {
    const int id = findName(name, kGmresrId, kGmresStarBicgStabId);
    if (id < 0) {
        return nullptr;
    }
    return makeCombinedSolver(id, SolverSettings{maxIter, l, tol},
                              innerOfCombined(innerMaxIter, innerM));
}

std::unique_ptr<LinearSolver> LinearSolverList::CreateByName(const char* name, int maxIter,
                                                             int m, double tol) {
    const int id = findName(name, 0, kSolverCount - 1);
    if (id < 0) {
        return nullptr;
    }
    const SolverSettings settings{maxIter, m, tol};
    if (isCombinedSolver(id)) {
        return makeCombinedSolver(id, settings, kInnerByName);
    }
    return makePlainSolver(idMadeByName(id), settings);
}

int LinearSolverList::findName(const char* name, int from, int to) const {
    const int end = std::min(to, count_ - 1);
    for (int id = from; id <= end; ++id) {
        if (names_[static_cast<std::size_t>(id)] == name) {
            return id;
        }
    }
    return -1;
}

void LinearSolverList::PrintNames() const {
    printText("List of Linear Solvers: A*u=b, n=%3d\n", count_);
    for (int id = 0; id < count_; ++id) {
        printText("%3d: %s\n", id, name(id));
    }
}

void LinearSolverList::ReservedOperation() {}

void LinearSolverList::PrintDescriptions() const {
    printText("List of Linear Solvers: A*u=b, models=%3d\n", count_);
    for (int id = 0; id < count_; ++id) {
        printText(" %d) %s : %s\n", id, name(id), description(id));
    }
}

const char* LinearSolverList::name(int id) const {
    return id < 0 || id >= count_ ? nullptr : names_[static_cast<std::size_t>(id)].c_str();
}

const char* LinearSolverList::description(int id) const {
    return id < 0 || id >= count_ ? nullptr
                                  : descriptions_[static_cast<std::size_t>(id)].c_str();
}

int LinearSolverList::group(int id) const {
    return id < 0 || id >= count_ ? -1 : groupOf_[static_cast<std::size_t>(id)];
}

const char* LinearSolverList::groupName(int index) const {
    return index < 0 || index >= groupCount_
               ? nullptr
               : groupNames_[static_cast<std::size_t>(index)].c_str();
}

}  // namespace orv
