// The host's HTTP server module: one loopback listener per port, built on cpp-httplib, with the
// engine's router semantics (preprocessors, prefix routes, 404 JSON when nothing handles).
// Handlers run on listener threads; a handler that returns true answers later through its
// callback, from any thread.
#pragma once

#include "Containers/Map.h"
#include "IHttpRouter.h"
#include "Modules/ModuleInterface.h"
#include <mutex>

class FHttpServerModule : public IModuleInterface
{
public:
	static bool IsAvailable();
	static FHttpServerModule& Get();

	TSharedPtr<IHttpRouter> GetHttpRouter(uint32 Port, bool bFailOnBindFailure = false);
	void StartAllListeners();
	void StopAllListeners();
	bool HasPendingListeners() const;

	void ShutdownModule() override;
	~FHttpServerModule() override;

	struct FListener;

private:
	mutable std::recursive_mutex Mutex;
	TMap<uint32, TSharedPtr<FListener>> Listeners;
	TArray<TSharedPtr<FListener>> RetiredListeners;
	bool bListenersEnabled = false;
};
