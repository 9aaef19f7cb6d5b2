#pragma once

#include <memory>
#include <string>
#include <vector>

#include "solvers/linear_solver.h"

namespace orv {

/// The registry of the solvers and the three factories over it.
///
/// Short-lived: a client makes one as `LinearSolverList(50, 10)`, asks for a solver and lets it
/// go; the solver lives on. The id of a solver is its place in the order of registration.
class LinearSolverList {
  public:
    /// Registers the 8 groups and the 42 solvers, as far as there is room for them.
    ///
    /// Domain:  a capacity below 42 serves `Create` alone, which answers for all ids.
    LinearSolverList(int capacity, int groupCapacity);
    LinearSolverList(const LinearSolverList&) = delete;
    LinearSolverList& operator=(const LinearSolverList&) = delete;

    virtual ~LinearSolverList();

    /// A new solver by id. `m` is the restart length of the Krylov solvers, or the number of
    /// directions of the combined ones; other classes drop it.
    ///
    /// Fails:   null for an id outside 0 to 41.
    /// Quirk:   gmresr-tolerance, gmres-star-inner
    virtual std::unique_ptr<LinearSolver> Create(int id, int maxIter, int m, double tol);

    /// A new combined solver, ids 27 to 30, with the settings of its inner solver; `l` is the
    /// number of directions.
    ///
    /// Fails:   null for every other name.
    /// Quirk:   gmresr-tolerance: innerM reaches the "GMRES*" forms alone
    virtual std::unique_ptr<LinearSolver> CreateCombined(const char* name, int maxIter, int l,
                                                         int innerMaxIter, int innerM,
                                                         double tol);

    /// A new solver by its registered name, which has to match byte for byte.
    ///
    /// Fails:   null for any other text.
    /// Quirk:   stab2-by-name, gmresr-tolerance, gmres-star-inner
    virtual std::unique_ptr<LinearSolver> CreateByName(const char* name, int maxIter, int m,
                                                       double tol);

    /// Writes the count, then id and name of each solver, to the standard output.
    virtual void PrintNames() const;

    /// Reserved; does nothing.
    virtual void ReservedOperation();

    /// Writes the count, then id, name and description of each solver, to the standard output.
    virtual void PrintDescriptions() const;

    /// Registers a group; does nothing when the list is full.
    void AddGroup(const char* name);
    /// Registers a solver; does nothing when the list is full.
    void AddSolver(const char* name, const char* description, int group);

    /// The number of registered solvers; valid ids lie below it.
    int count() const { return count_; }
    /// The number of registered groups.
    int groupCount() const { return groupCount_; }
    /// The name of a registered solver, null for any other id.
    const char* name(int id) const;
    /// The description of a registered solver, null for any other id.
    const char* description(int id) const;
    /// The group index of a solver, -1 for an id that is not registered.
    int group(int id) const;
    /// The name of a registered group, null for any other index.
    const char* groupName(int index) const;

  private:
    int findName(const char* name, int from, int to) const;

    int count_ = 0;
    int capacity_;
    std::vector<std::string> descriptions_;
    std::vector<std::string> names_;
    std::vector<int> groupOf_;
    int groupCount_ = 0;
    int groupCapacity_;
    std::vector<std::string> groupNames_;
};

}  // namespace orv
