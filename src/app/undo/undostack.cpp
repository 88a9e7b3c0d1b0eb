#include "app/undo/undostack.h"

#include "app/undo/undotexts.h"

namespace ellwynd {

namespace {

constexpr std::size_t maxSteps = 100;

} // namespace

UndoResult undoResult(std::size_t left, std::size_t total) {
    if (left == 0)
        return UndoResult::all;
    return left < total ? UndoResult::some : UndoResult::none;
}

UndoStack::ID UndoStack::push(UndoStep step) {
    steps.push_back({++lastID, std::move(step)});
    if (steps.size() > maxSteps)
        steps.pop_front();
    Q_EMIT newestDidChange();
    Q_EMIT stepDidOccur();
    return lastID;
}

const UndoStep *UndoStack::newest() const {
    return steps.empty() ? nullptr : &steps.back().step;
}

UndoStack::ID UndoStack::newestID() const {
    return steps.empty() ? 0 : steps.back().id;
}

void UndoStack::extendNewest() {
    if (!steps.empty())
        Q_EMIT stepDidOccur();
}

void UndoStack::dropNewest() {
    if (steps.empty())
        return;
    steps.pop_back();
    Q_EMIT newestDidChange();
}

void UndoStack::undo() {
    if (steps.empty())
        return;
    const UndoStep step = std::move(steps.back().step);
    steps.pop_back();
    Q_EMIT newestDidChange();
    const UndoResult result = step.undo();
    Q_EMIT undoDidEnd(QString::fromStdString(undotexts::ended(step.texts.name, result)));
}

void UndoStack::clear() {
    const bool wasEmpty = steps.empty();
    steps.clear();
    if (!wasEmpty)
        Q_EMIT newestDidChange();
    Q_EMIT stackDidClear();
}

} // namespace ellwynd
