// TFuture: the result of Async. Like the engine's, a future that is dropped does not wait for
// its work to finish.
#pragma once

#include "CoreTypes.h"
#include <chrono>
#include <future>
#include <utility>

template <typename ResultType>
class TFuture
{
public:
	TFuture() = default;
	explicit TFuture(std::shared_future<ResultType> InState) : State(std::move(InState)) {}

	bool IsValid() const { return State.valid(); }
	bool IsReady() const { return State.valid() && State.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
	void Wait() const { State.wait(); }
	decltype(auto) Get() const { return State.get(); }

private:
	std::shared_future<ResultType> State;
};
