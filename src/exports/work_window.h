#pragma once

namespace orv {

/// Receives the share of the work that is done and may ask to stop.
///
/// The plane face installs one.
class WorkObserver {
  public:
    virtual ~WorkObserver();
    /// `done` runs from 0 to 1 and never falls. Returns false to ask the engine to stop.
    virtual bool onWork(double done) = 0;
};

/// Installs `observer` for the length of a scope; the C face runs without one.
///
/// The host's callback cannot serve here: its values jump and overshoot by design and only one
/// scheme sends them. This second, exact account is kept beside it.
class WorkObserverScope {
  public:
    explicit WorkObserverScope(WorkObserver* observer);
    ~WorkObserverScope();
    WorkObserverScope(const WorkObserverScope&) = delete;
    WorkObserverScope& operator=(const WorkObserverScope&) = delete;
};

/// Narrows the account to part `index` of `count` equal parts of the current one.
///
/// The part holds while the slice lives.
class WorkSlice {
  public:
    WorkSlice(int index, int count);
    ~WorkSlice();
    WorkSlice(const WorkSlice&) = delete;
    WorkSlice& operator=(const WorkSlice&) = delete;

  private:
    double low_;
    double high_;
};

/// Reports that `done` of `total` units of the current slice are finished.
///
/// False once the observer has asked to stop: loops then end early, and the client drops their
/// result.
bool reportWork(int done, int total);

/// Keeps the account of a pass at the head of each of its lines: reports every 16th.
///
/// False once the observer has asked to stop.
bool reportLine(int line, int lines);

/// Whether the observer has asked to stop.
bool workCancelled();

}  // namespace orv
