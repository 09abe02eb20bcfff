// JSON-RPC dispatch: the exact envelopes MCP clients read, byte for byte in key order.
#include "ZorvekTestSupport.h"

#include "Server/ZorvekMCPBridgeServer.h"

namespace
{
	FString Dispatch(const FString& RequestText)
	{
		TSharedRef<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		const TSharedPtr<FJsonObject> Request = ParseJsonObject(RequestText);
		EXPECT_TRUE(Request.IsValid()) << UECompatToUtf8(RequestText);
		const TSharedPtr<FJsonObject> Envelope = Server->HandleJsonRpcRequest(Request);
		return Envelope.IsValid() ? ToCondensedJson(Envelope) : FString(TEXT("<no answer>"));
	}
}

TEST(JsonRpcDispatch, InitializeAnswersTheSameWhateverTheClientAsks)
{
	const FString Expected(TEXT("{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{\"protocolVersion\":\"2025-06-18\",\"capabilities\":{\"tools\":{}},\"serverInfo\":{\"name\":\"zorvek-unreal-mcp-bridge\",\"version\":\"1.0.0\"}}}"));
	EXPECT_EQ(Dispatch(TEXT("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"initialize\",\"params\":{\"protocolVersion\":\"1999-01-01\"}}")), Expected);
	EXPECT_EQ(Dispatch(TEXT("{\"id\":1,\"method\":\"INITIALIZE\"}")), Expected);
}

TEST(JsonRpcDispatch, IdsAreEchoedAsTheyStand)
{
	EXPECT_EQ(Dispatch(TEXT("{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"ping\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":7,\"result\":{}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":\"abc\",\"method\":\"ping\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":\"abc\",\"result\":{}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"method\":\"ping\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":null,\"result\":{}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":{\"nested\":[1]},\"method\":\"Ping\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":{\"nested\":[1]},\"result\":{}}")));
}

TEST(JsonRpcDispatch, OnlyTheInitializedNotificationWithoutIdGoesUnanswered)
{
	EXPECT_EQ(Dispatch(TEXT("{\"jsonrpc\":\"2.0\",\"method\":\"notifications/initialized\"}")), FString(TEXT("<no answer>")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":3,\"method\":\"notifications/initialized\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":3,\"result\":{}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"method\":\"notifications/cancelled\"}")),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":null,\"error\":{\"code\":-32601,\"message\":\"Method not found: notifications/cancelled\"}}")));
}

TEST(JsonRpcDispatch, MalformedRequestsGetTheirErrorEnvelopes)
{
	EXPECT_EQ(Dispatch(TEXT("{\"id\":1,\"method\":5}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":1,\"error\":{\"code\":-32600,\"message\":\"Invalid Request: missing method\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":1}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":1,\"error\":{\"code\":-32600,\"message\":\"Invalid Request: missing method\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":2,\"method\":\"resources/list\"}")), FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":2,\"error\":{\"code\":-32601,\"message\":\"Method not found: resources/list\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":4,\"method\":\"tools/call\",\"params\":[1]}")),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":4,\"error\":{\"code\":-32602,\"message\":\"Invalid params: tools/call requires params object\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":4,\"method\":\"tools/call\"}")),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":4,\"error\":{\"code\":-32602,\"message\":\"Invalid params: tools/call requires params object\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":5,\"method\":\"tools/call\",\"params\":{\"name\":12}}")),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":5,\"error\":{\"code\":-32602,\"message\":\"Invalid params: missing tool name\"}}")));
	EXPECT_EQ(Dispatch(TEXT("{\"id\":6,\"method\":\"tools/call\",\"params\":{\"name\":\"No_Such_Tool\",\"arguments\":{}}}")),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":6,\"error\":{\"code\":-32601,\"message\":\"Unknown tool: No_Such_Tool\"}}")));
}

TEST(JsonRpcDispatch, ParseErrorEnvelopeHasNullIdAndNoData)
{
	EXPECT_EQ(ToCondensedJson(FZorvekMCPBridgeServer::MakeErrorResponse(-32700, TEXT("Parse error"))),
		FString(TEXT("{\"jsonrpc\":\"2.0\",\"id\":null,\"error\":{\"code\":-32700,\"message\":\"Parse error\"}}")));
}

TEST(JsonRpcDispatch, ToolsListIsAnObjectWithTheToolsArray)
{
	const TSharedPtr<FJsonObject> Envelope = ParseJsonObject(Dispatch(TEXT("{\"id\":9,\"method\":\"tools/list\",\"params\":{\"cursor\":\"x\"}}")));
	ASSERT_TRUE(Envelope.IsValid());
	const TSharedPtr<FJsonObject>* Result = nullptr;
	ASSERT_TRUE(Envelope->TryGetObjectField(TEXT("result"), Result));
	EXPECT_EQ((*Result)->Values.Num(), 1);
	EXPECT_TRUE((*Result)->HasTypedField<EJson::Array>(TEXT("tools")));
}
