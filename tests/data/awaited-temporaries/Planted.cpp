// Planted for the check of awaited temporaries (never compiled): the co_await expressions before
// line 20 are allowed; each one from line 20 on awaits a temporary and is refused.
QCoro::Task<int> allowed(QCoro::Task<int> task, QDBusConnection bus, QDBusMessage call) {
    co_await QCoro::sleepFor(std::chrono::milliseconds(1));
    co_await qCoro(&object, &Object::changed);
    const QDBusMessage reply = co_await bus.asyncCall(call, 100);
    QCoro::Task<int> named = answer(1);
    const int value = co_await std::move(named);
    co_await task;
    // co_await answer(2) in a comment is no code
    const char* text = "co_await answer(3)";
    co_return value;
}



// Here the refused ones begin.

QCoro::Task<int> refused(Store store) {
    const int first = co_await answer({1, 2});
    const int second = (co_await store.read()).size();
    co_await
        store.remove(Item{"a"});
    co_return first + second;
}
