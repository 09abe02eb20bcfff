// The HTTP server module's router and response semantics, as the engine's: the endpoint's
// binding logic and its answers on the wire depend on them. Ports here stay away from the
// endpoint's range.
#include "ZorvekTestSupport.h"

#include "Async/Async.h"
#include "Containers/StringConv.h"
#include "HttpServerModule.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"
#include "IHttpRouter.h"

namespace
{
	constexpr uint32 FirstTestPort = 18931;

	FHttpRequestHandler AnswerWith(const FString& Body, TArray<FHttpServerRequest>* Seen = nullptr)
	{
		return FHttpRequestHandler::CreateLambda([Body, Seen](const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
		{
			if (Seen)
			{
				Seen->Add(Request);
			}
			OnComplete(FHttpServerResponse::Create(Body, TEXT("text/plain")));
			return true;
		});
	}

	class CompatHttpServer : public ::testing::Test
	{
	protected:
		void TearDown() override { FHttpServerModule::Get().StopAllListeners(); }
	};
}

TEST_F(CompatHttpServer, ResponseHelpersChooseTheirOwnStatusAndCharset)
{
	TUniquePtr<FHttpServerResponse> Text = FHttpServerResponse::Create(FString(TEXT("x")), TEXT("application/json"));
	EXPECT_EQ(Text->Code, EHttpServerResponseCodes::Ok);
	EXPECT_TRUE(Text->Headers.FindRef(TEXT("content-type"))[0].Equals(TEXT("application/json;charset=utf-8")));
	TUniquePtr<FHttpServerResponse> Bytes = FHttpServerResponse::Create(TArray<uint8>{'x'}, TEXT("application/json; charset=utf-8"));
	EXPECT_TRUE(Bytes->Headers.FindRef(TEXT("content-type"))[0].Equals(TEXT("application/json; charset=utf-8")));
	EXPECT_EQ(FHttpServerResponse::Ok()->Code, EHttpServerResponseCodes::NoContent);
	EXPECT_TRUE(FHttpServerResponse::Ok()->Body.IsEmpty());
}

TEST_F(CompatHttpServer, BindFailsOnATakenPortOnlyWhenAskedAndListening)
{
	FPortBlocker Blocker((int)FirstTestPort);
	ASSERT_TRUE(Blocker.IsHeld());
	FHttpServerModule& Module = FHttpServerModule::Get();
	Module.StopAllListeners();
	// Listeners not enabled yet: a router comes back, nothing listens.
	EXPECT_TRUE(Module.GetHttpRouter(FirstTestPort + 1, true).IsValid());
	EXPECT_TRUE(Module.HasPendingListeners());
	Module.StartAllListeners();
	EXPECT_FALSE(Module.GetHttpRouter(FirstTestPort, true).IsValid());
	EXPECT_TRUE(Module.GetHttpRouter(FirstTestPort, false).IsValid());
}

TEST_F(CompatHttpServer, RoutesArePrefixMatchedPerVerbAndBoundOnce)
{
	FHttpServerModule& Module = FHttpServerModule::Get();
	Module.StartAllListeners();
	const uint32 Port = FirstTestPort + 2;
	TSharedPtr<IHttpRouter> Router = Module.GetHttpRouter(Port, true);
	ASSERT_TRUE(Router.IsValid());
	TArray<FHttpServerRequest> Seen;
	const FHttpRouteHandle Handle = Router->BindRoute(FHttpPath(TEXT("/mcp")), EHttpServerRequestVerbs::VERB_POST, AnswerWith(TEXT("posted"), &Seen));
	ASSERT_TRUE(Handle.IsValid());
	EXPECT_FALSE(Router->BindRoute(FHttpPath(TEXT("/mcp")), EHttpServerRequestVerbs::VERB_POST, AnswerWith(TEXT("again"))).IsValid());
	EXPECT_TRUE(Router->BindRoute(FHttpPath(TEXT("/mcp")), EHttpServerRequestVerbs::VERB_PUT, AnswerWith(TEXT("put"))).IsValid());

	const FRawHttpResponse Sub = SendRawHttp((int)Port, "POST /MCP/extra?x=1 HTTP/1.1\r\nHost: h\r\nX-List: a, b\r\nContent-Length: 2\r\nConnection: close\r\n\r\nhi");
	EXPECT_EQ(Sub.Status, 200);
	EXPECT_EQ(Sub.Body, "posted");
	ASSERT_EQ(Seen.Num(), 1);
	EXPECT_TRUE(Seen[0].RelativePath.GetPath().Equals(TEXT("/extra")));
	EXPECT_TRUE(Seen[0].QueryParams.FindRef(TEXT("x")).Equals(TEXT("1")));
	EXPECT_EQ(Seen[0].Headers.FindRef(TEXT("x-list")), (TArray<FString>{TEXT("a"), TEXT(" b")}));
	EXPECT_EQ(Seen[0].Body, (TArray<uint8>{'h', 'i'}));

	const FRawHttpResponse WrongVerb = SendRawHttp((int)Port, "GET /mcp HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
	EXPECT_EQ(WrongVerb.Status, 404);
	EXPECT_EQ(WrongVerb.Body, "{\"errorCode\": \"errors.com.epicgames.httpserver.route_handler_not_found\", \"errorMessage\": \"\"}");
	const FRawHttpResponse NoLength = SendRawHttp((int)Port, "POST /mcp HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
	EXPECT_EQ(NoLength.Status, 411);

	Router->UnbindRoute(Handle);
	EXPECT_EQ(SendRawHttp((int)Port, "POST /mcp HTTP/1.1\r\nHost: h\r\nContent-Length: 0\r\nConnection: close\r\n\r\n").Status, 404);
}

TEST_F(CompatHttpServer, PreprocessorsRunFirstAndDeferredAnswersArriveFromTheGameThread)
{
	FHttpServerModule& Module = FHttpServerModule::Get();
	Module.StartAllListeners();
	const uint32 Port = FirstTestPort + 3;
	TSharedPtr<IHttpRouter> Router = Module.GetHttpRouter(Port, true);
	ASSERT_TRUE(Router.IsValid());
	const FHttpRouteHandle Handle = Router->BindRoute(FHttpPath(TEXT("/deferred")), EHttpServerRequestVerbs::VERB_POST,
		FHttpRequestHandler::CreateLambda([](const FHttpServerRequest&, const FHttpResultCallback& OnComplete)
		{
			AsyncTask(ENamedThreads::GameThread, [OnComplete]() { OnComplete(FHttpServerResponse::Create(FString(TEXT("later")), TEXT("text/plain"))); });
			return true;
		}));
	ASSERT_TRUE(Handle.IsValid());
	const FDelegateHandle Guard = Router->RegisterRequestPreprocessor(FHttpRequestHandler::CreateLambda([](const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
	{
		if (!Request.Headers.Contains(TEXT("x-block")))
		{
			return false;
		}
		TUniquePtr<FHttpServerResponse> Refusal = FHttpServerResponse::Create(FString(TEXT("no")), TEXT("text/plain"));
		Refusal->Code = EHttpServerResponseCodes::Forbidden;
		OnComplete(MoveTemp(Refusal));
		return true;
	}));
	EXPECT_EQ(SendRawHttp((int)Port, "POST /deferred HTTP/1.1\r\nHost: h\r\nContent-Length: 0\r\nConnection: close\r\n\r\n").Body, "later");
	EXPECT_EQ(SendRawHttp((int)Port, "POST /deferred HTTP/1.1\r\nHost: h\r\nX-Block: 1\r\nContent-Length: 0\r\nConnection: close\r\n\r\n").Status, 403);
	Router->UnregisterRequestPreprocessor(Guard);
	EXPECT_EQ(SendRawHttp((int)Port, "POST /deferred HTTP/1.1\r\nHost: h\r\nX-Block: 1\r\nContent-Length: 0\r\nConnection: close\r\n\r\n").Status, 200);
	Router->UnbindRoute(Handle);
}
