// blueprint_connect_nodes, blueprint_set_node_position, blueprint_add_comment and blueprint_compile
// on the simulated editor: the schema's verdicts through the tool, the pin-name fallbacks, links a
// one-link pin gives up, moves on one axis, comment bounds, compile outcomes, and for every refused
// call a read-back showing the graph as it was.
#include "BlueprintNodeTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintNodeTests;

namespace
{
	const TCHAR* const NodeToolsPrintStringId = TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString");
}

// ---- Connecting ----

TEST_F(FBlueprintNodeToolsTest, ConnectLinksExecPinsAndAnswersWhatItDid)
{
	const FString Event = AddNodeGuid(FreshPath, TEXT("custom_event::Go"));
	const FString Branch = AddNodeGuid(FreshPath, TEXT("node::branch"));
	const TSharedPtr<FJsonObject> Answer = Ok(Connect(FreshPath, Event, TEXT("then"), Branch, TEXT("execute")));
	EXPECT_EQ(Keys(Answer), (std::vector<std::string>{"asset_path", "result", "connected"}));
	EXPECT_TRUE(Answer->GetBoolField(TEXT("connected")));
	EXPECT_EQ(S(Answer->GetStringField(TEXT("result"))), S(FString::Printf(TEXT("Connected %s:then -> %s:execute."), *Event, *Branch)));
	EXPECT_EQ(LinksOf(FreshPath, Branch, TEXT("execute")), (std::vector<std::string>{S(Event + TEXT(".then"))}));
	// A new link marks the Blueprint modified (unreal-behaviour-blueprints.md §3.1, §4.2).
	EXPECT_EQ(Read(FreshPath).Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
}

TEST_F(FBlueprintNodeToolsTest, ConnectFindsNodesByGuidInAnyCaseAndPinsByTheirFallbackWords)
{
	const FString Event = AddNodeGuid(FreshPath, TEXT("custom_event::Go"));
	const FString Print = AddNodeGuid(FreshPath, NodeToolsPrintStringId);
	// "exec" names the event's exec output and the print's exec input; GUIDs match in any case.
	Ok(Connect(FreshPath, Event.ToLower(), TEXT("exec"), Print.ToLower(), TEXT("exec")));
	EXPECT_EQ(LinksOf(FreshPath, Print, TEXT("execute")), (std::vector<std::string>{S(Event + TEXT(".then"))}));
	// A macro's only exec output has its own name (unreal-behaviour-blueprints.md §2.3).
	const FString Once = AddNodeGuid(FreshPath, TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:DoOnce"));
	const FString Gate = AddNodeGuid(FreshPath, TEXT("macro::/Engine/EditorBlueprintResources/StandardMacros:Gate"));
	Ok(Connect(FreshPath, Once, TEXT("then"), Print, TEXT("execute")));
	EXPECT_EQ(LinksOf(FreshPath, Once, TEXT("Completed")), (std::vector<std::string>{S(Print + TEXT(".execute"))}));
	// A gate has four exec inputs: "execute" names none of them.
	EXPECT_EQ(ErrorText(Connect(FreshPath, Event, TEXT("then"), Gate, TEXT("execute"))), "Could not resolve pins then -> execute.");

	// "Target" is the self pin's label (unreal-behaviour-blueprints.md §2.5).
	const FString Boom = AddNodeGuid(ShowcasePath, TEXT("var_get::CameraBoom"));
	const FString Hide = AddNodeGuid(ShowcasePath, TEXT("func::/Script/Engine.SceneComponent:SetVisibility"));
	Ok(Connect(ShowcasePath, Boom, TEXT("CameraBoom"), Hide, TEXT("Target")));
	EXPECT_EQ(LinksOf(ShowcasePath, Hide, TEXT("self")), (std::vector<std::string>{S(Boom + TEXT(".CameraBoom"))}));

	// Any other name that matches no pin falls back to "then" on the source and "execute" on the
	// target; a node without such a pin has nothing to fall back to.
	const FString Branch = AddNodeGuid(FreshPath, TEXT("node::branch"));
	Ok(Connect(FreshPath, Event, TEXT("Finished"), Branch, TEXT("Start")));
	EXPECT_EQ(LinksOf(FreshPath, Branch, TEXT("execute")), (std::vector<std::string>{S(Event + TEXT(".then"))}));
	const std::string Before = Describe(FreshPath);
	EXPECT_EQ(ErrorText(Connect(FreshPath, Gate, TEXT("Finished"), Print, TEXT("execute"))), "Could not resolve pins Finished -> execute.");
	EXPECT_EQ(Describe(FreshPath), Before);
}

TEST_F(FBlueprintNodeToolsTest, OneLinkPinsGiveUpTheirOldLink)
{
	// unreal-behaviour-blueprints.md §3.2: a data input and an exec output hold one link each.
	const FString Event = AddNodeGuid(ShowcasePath, TEXT("custom_event::Go"));
	const FString Branch = AddNodeGuid(ShowcasePath, TEXT("node::branch"));
	const FString Print = AddNodeGuid(ShowcasePath, NodeToolsPrintStringId);
	const FString Active = AddNodeGuid(ShowcasePath, TEXT("var_get::bIsActive"));
	const FString Damageable = AddNodeGuid(ShowcasePath, TEXT("var_get::bCanBeDamaged:/Script/Engine.Actor"));

	Ok(Connect(ShowcasePath, Active, TEXT("bIsActive"), Branch, TEXT("Condition")));
	const TSharedPtr<FJsonObject> Replaced = Ok(Connect(ShowcasePath, Damageable, TEXT("bCanBeDamaged"), Branch, TEXT("Condition")));
	EXPECT_EQ(S(Replaced->GetStringField(TEXT("result"))),
		S(FString::Printf(TEXT("Connected %s:bCanBeDamaged -> %s:Condition. Replace existing input connections."), *Damageable, *Branch)));
	EXPECT_EQ(LinksOf(ShowcasePath, Branch, TEXT("Condition")), (std::vector<std::string>{S(Damageable + TEXT(".bCanBeDamaged"))}));
	EXPECT_TRUE(LinksOf(ShowcasePath, Active, TEXT("bIsActive")).empty());

	Ok(Connect(ShowcasePath, Event, TEXT("then"), Branch, TEXT("execute")));
	Ok(Connect(ShowcasePath, Event, TEXT("then"), Print, TEXT("execute")));
	EXPECT_EQ(LinksOf(ShowcasePath, Event, TEXT("then")), (std::vector<std::string>{S(Print + TEXT(".execute"))}));
	// An exec input takes any number of links.
	Ok(Connect(ShowcasePath, Branch, TEXT("else"), Print, TEXT("execute")));
	EXPECT_EQ(LinksOf(ShowcasePath, Print, TEXT("execute")).size(), 2u);
}

TEST_F(FBlueprintNodeToolsTest, SchemaRefusalsAndUnknownNodesLeaveTheGraphAsItWas)
{
	const FString Branch = AddNodeGuid(FreshPath, TEXT("node::branch"));
	const FString Print = AddNodeGuid(FreshPath, NodeToolsPrintStringId);
	const std::string Before = Describe(FreshPath);
	const auto ExpectRejected = [&](const FString& SourceGuid, const TCHAR* SourcePin, const FString& TargetGuid, const TCHAR* TargetPin)
	{
		EXPECT_EQ(ErrorText(Connect(FreshPath, SourceGuid, SourcePin, TargetGuid, TargetPin)),
			S(FString::Printf(TEXT("Unreal rejected connection %s:%s -> %s:%s."), *SourceGuid, SourcePin, *TargetGuid, TargetPin)));
		EXPECT_EQ(Describe(FreshPath), Before) << S(SourcePin) << " -> " << S(TargetPin);
	};
	// unreal-behaviour-blueprints.md §3.2, §3.3: directions, same node, exec against data.
	ExpectRejected(Branch, TEXT("execute"), Print, TEXT("execute"));
	ExpectRejected(Branch, TEXT("then"), Branch, TEXT("execute"));
	ExpectRejected(Branch, TEXT("then"), Print, TEXT("InString"));

	for (const TCHAR* Guid : {TEXT("not-a-guid"), TEXT(""), TEXT("00000000000000000000000000000000")})
	{
		EXPECT_EQ(ErrorText(Connect(FreshPath, Guid, TEXT("then"), Print, TEXT("execute"))), "Could not resolve source or target node GUID.");
	}
	// A GUID written with separators is not the engine's 32-digit text.
	FString Separated = Print.Left(8) + TEXT("-") + Print.Mid(8, 4) + TEXT("-") + Print.Mid(12, 4) + TEXT("-") + Print.Mid(16, 4) + TEXT("-") + Print.Mid(20);
	EXPECT_EQ(ErrorText(Connect(FreshPath, Branch, TEXT("then"), Separated, TEXT("execute"))), "Could not resolve source or target node GUID.");
	EXPECT_EQ(ErrorText(Connect(FreshPath, Branch, TEXT("then"), Print, TEXT("execute"), TEXT("Elsewhere"))), "Could not find graph 'Elsewhere' in /Game/NodeTests/BP_Fresh.BP_Fresh.");
	const TSharedPtr<FJsonObject> NotText = Arguments({{TEXT("BlueprintNameOrPath"), Text(FreshPath)}, {TEXT("SourceNodeGuid"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())},
		{TEXT("SourcePinName"), Text(TEXT("then"))}, {TEXT("TargetNodeGuid"), Text(*Print)}, {TEXT("TargetPinName"), Text(TEXT("execute"))}});
	EXPECT_EQ(ErrorText(Runner->Call(TEXT("blueprint_connect_nodes"), NotText)), "Could not resolve source or target node GUID.");
	EXPECT_EQ(Describe(FreshPath), Before);
}

// ---- Moving and comments ----

TEST_F(FBlueprintNodeToolsTest, MoveKeepsTheAxisItIsNotGiven)
{
	const FString Branch = AddNodeGuid(FreshPath, TEXT("node::branch"), {{TEXT("NodePosX"), Number(100)}, {TEXT("NodePosY"), Number(200)}});
	const TSharedPtr<FJsonObject> Moved = Ok(CallOn(FreshPath, TEXT("blueprint_set_node_position"), {{TEXT("NodeGuid"), Text(*Branch.ToLower())}, {TEXT("NodePosY"), Text(TEXT("-48"))}}));
	EXPECT_EQ(Keys(Moved), (std::vector<std::string>{"asset_path", "graph_name", "node_guid", "title", "node_pos_x", "node_pos_y"}));
	EXPECT_EQ(S(Moved->GetStringField(TEXT("node_guid"))), S(Branch));
	EXPECT_EQ(S(Moved->GetStringField(TEXT("title"))), "Branch");
	EXPECT_EQ(Moved->GetNumberField(TEXT("node_pos_x")), 100);
	EXPECT_EQ(Moved->GetNumberField(TEXT("node_pos_y")), -48);
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(FreshPath);
	const FZorvekMCPBridgeNodeSnapshot* Node = FindNode(Snapshot, Branch);
	ASSERT_NE(Node, nullptr);
	EXPECT_EQ(Node->PosX, 100);
	EXPECT_EQ(Node->PosY, -48);

	Ok(CallOn(FreshPath, TEXT("blueprint_set_node_position"), {{TEXT("NodeGuid"), Text(*Branch)}, {TEXT("NodePosX"), Number(7)}}));
	const FZorvekMCPBridgeBlueprintSnapshot After = Read(FreshPath);
	EXPECT_EQ(FindNode(After, Branch)->PosX, 7);
	EXPECT_EQ(FindNode(After, Branch)->PosY, -48);

	const std::string Before = Describe(FreshPath);
	EXPECT_EQ(ErrorText(CallOn(FreshPath, TEXT("blueprint_set_node_position"), {{TEXT("NodePosX"), Number(1)}})), "blueprint_set_node_position requires NodeGuid.");
	EXPECT_EQ(ErrorText(CallOn(FreshPath, TEXT("blueprint_set_node_position"), {{TEXT("NodeGuid"), Text(TEXT("ABC"))}, {TEXT("NodePosX"), Number(1)}})),
		"Could not resolve node GUID for positioning: ABC");
	EXPECT_EQ(Describe(FreshPath), Before);
}

TEST_F(FBlueprintNodeToolsTest, CommentBoxesGetAtLeastOneUnitAndKeepTheDefaultFont)
{
	const TSharedPtr<FJsonObject> Answer = Ok(CallOn(FreshPath, TEXT("blueprint_add_comment"), {{TEXT("CommentText"), Text(TEXT("Movement"))},
		{TEXT("NodePosX"), Number(-20)}, {TEXT("NodePosY"), Text(TEXT("30"))}, {TEXT("Width"), Number(0)}, {TEXT("Height"), Number(-5)}}));
	EXPECT_EQ(Keys(Answer), (std::vector<std::string>{"asset_path", "graph_name", "node_guid", "comment_text", "bounds", "font_size"}));
	const TSharedPtr<FJsonObject> Bounds = Answer->GetObjectField(TEXT("bounds"));
	EXPECT_EQ(Keys(Bounds), (std::vector<std::string>{"x", "y", "width", "height"}));
	EXPECT_EQ(Bounds->GetNumberField(TEXT("x")), -20);
	EXPECT_EQ(Bounds->GetNumberField(TEXT("y")), 30);
	EXPECT_EQ(Bounds->GetNumberField(TEXT("width")), 1);
	EXPECT_EQ(Bounds->GetNumberField(TEXT("height")), 1);
	EXPECT_EQ(Answer->GetNumberField(TEXT("font_size")), 0);

	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(FreshPath);
	const FZorvekMCPBridgeNodeSnapshot* Comment = FindNode(Snapshot, Answer->GetStringField(TEXT("node_guid")));
	ASSERT_NE(Comment, nullptr);
	EXPECT_EQ(Comment->Kind, EZorvekMCPBridgeNodeKind::Comment);
	EXPECT_EQ(Comment->Width, 1);
	EXPECT_EQ(Comment->Height, 1);
	// The text survives the comment's placement hook, which writes "Comment" (§2.11), and the
	// engine's default font size stays.
	EXPECT_EQ(S(Comment->Comment), "Movement");
	EXPECT_EQ(Comment->Data.CommentFontSize, 18);

	const TSharedPtr<FJsonObject> Sized = Ok(CallOn(FreshPath, TEXT("blueprint_add_comment"), {{TEXT("CommentText"), Text(TEXT("Big"))}, {TEXT("FontSize"), Text(TEXT("32"))}}));
	EXPECT_EQ(Sized->GetObjectField(TEXT("bounds"))->GetNumberField(TEXT("width")), 400);
	EXPECT_EQ(Sized->GetObjectField(TEXT("bounds"))->GetNumberField(TEXT("height")), 220);
	const FZorvekMCPBridgeBlueprintSnapshot WithSized = Read(FreshPath);
	EXPECT_EQ(FindNode(WithSized, Sized->GetStringField(TEXT("node_guid")))->Data.CommentFontSize, 32);

	const std::string Before = Describe(FreshPath);
	EXPECT_EQ(ErrorText(CallOn(FreshPath, TEXT("blueprint_add_comment"), {{TEXT("Width"), Number(10)}})), "blueprint_add_comment requires CommentText.");
	EXPECT_EQ(Describe(FreshPath), Before);
}

// ---- Compiling ----

TEST_F(FBlueprintNodeToolsTest, CompileReportsStatusCountsAndClasses)
{
	const TSharedPtr<FJsonObject> Clean = Ok(CallOn(FreshPath, TEXT("blueprint_compile"), {}));
	EXPECT_EQ(Keys(Clean), (std::vector<std::string>{"asset_path", "object_path", "success", "status", "error_count", "warning_count", "message_count", "duration_seconds",
		"has_generated_class", "has_skeleton_generated_class", "generated_class_path", "skeleton_generated_class_path", "messages"}));
	EXPECT_EQ(S(Clean->GetStringField(TEXT("asset_path"))), "/Game/NodeTests/BP_Fresh");
	EXPECT_EQ(S(Clean->GetStringField(TEXT("object_path"))), S(FreshPath));
	EXPECT_TRUE(Clean->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Clean->GetStringField(TEXT("status"))), "up_to_date");
	EXPECT_EQ(Clean->GetNumberField(TEXT("error_count")), 0);
	EXPECT_EQ(Clean->GetNumberField(TEXT("message_count")), Clean->GetArrayField(TEXT("messages")).Num());
	EXPECT_GE(Clean->GetNumberField(TEXT("duration_seconds")), 0.0);
	EXPECT_EQ(S(Clean->GetStringField(TEXT("generated_class_path"))), "/Game/NodeTests/BP_Fresh.BP_Fresh_C");
	EXPECT_EQ(S(Clean->GetStringField(TEXT("skeleton_generated_class_path"))), "/Game/NodeTests/BP_Fresh.SKEL_BP_Fresh_C");

	// An edit makes the Blueprint dirty until the next compile (unreal-behaviour-blueprints.md §4.2).
	AddNodeGuid(FreshPath, TEXT("node::branch"));
	EXPECT_EQ(Read(FreshPath).Status, EZorvekMCPBridgeBlueprintStatus::Dirty);

	// A node no event reaches is pruned before anything is checked (§4.4).
	AddNodeGuid(FreshPath, TEXT("cast::/Script/Engine.Character"));
	EXPECT_EQ(S(Ok(CallOn(FreshPath, TEXT("blueprint_compile"), {}))->GetStringField(TEXT("status"))), "up_to_date");
}

TEST_F(FBlueprintNodeToolsTest, CompileErrorsAreAnAnswerWithTheirMessages)
{
	// unreal-behaviour-blueprints.md §2.4, §4.3: a reached cast without an Object is undetermined.
	const FString BeginPlay = AddNodeGuid(FreshPath, TEXT("event::ReceiveBeginPlay"));
	const FString Cast = AddNodeGuid(FreshPath, TEXT("cast::/Script/Engine.Character"));
	Ok(Connect(FreshPath, BeginPlay, TEXT("then"), Cast, TEXT("execute")));
	const TSharedPtr<FJsonObject> Result = Runner->Call(TEXT("blueprint_compile"), Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("BP_Fresh"))}}));
	const TSharedPtr<FJsonObject> Failed = Ok(Result);
	EXPECT_FALSE(Failed->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Failed->GetStringField(TEXT("status"))), "error");
	EXPECT_GE(Failed->GetNumberField(TEXT("error_count")), 1);
	bool bFound = false;
	for (const TSharedPtr<FJsonValue>& Message : Failed->GetArrayField(TEXT("messages")))
	{
		const TSharedPtr<FJsonObject> Entry = Message->AsObject();
		EXPECT_EQ(Keys(Entry), (std::vector<std::string>{"severity", "text"}));
		bFound = bFound || (Entry->GetStringField(TEXT("severity")) == TEXT("error")
			&& Entry->GetStringField(TEXT("text")) == TEXT("The type of  Object  is undetermined.  Connect something to  Cast To Character  to imply a specific type."));
	}
	EXPECT_TRUE(bFound) << S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
	EXPECT_EQ(Read(FreshPath).Status, EZorvekMCPBridgeBlueprintStatus::Error);
}

TEST_F(FBlueprintNodeToolsTest, CompileWarningsStillSucceed)
{
	// §4.4 step 5: a value read from a pruned impure node is read as its default, with a warning.
	const FString BeginPlay = AddNodeGuid(FreshPath, TEXT("event::ReceiveBeginPlay"));
	const FString Delay = AddNodeGuid(FreshPath, TEXT("func::/Script/Engine.KismetSystemLibrary:Delay"));
	Ok(CallOn(FreshPath, TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Wait"))}, {TEXT("Type"), Text(TEXT("float"))}}));
	const FString SetWait = AddNodeGuid(FreshPath, TEXT("var_set::Wait"));
	Ok(Connect(FreshPath, BeginPlay, TEXT("then"), Delay, TEXT("execute")));
	Ok(Connect(FreshPath, SetWait, TEXT("Output_Get"), Delay, TEXT("Duration")));
	const TSharedPtr<FJsonObject> Warned = Ok(CallOn(FreshPath, TEXT("blueprint_compile"), {}));
	EXPECT_TRUE(Warned->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Warned->GetStringField(TEXT("status"))), "up_to_date_with_warnings");
	EXPECT_EQ(Warned->GetNumberField(TEXT("error_count")), 0);
	EXPECT_GE(Warned->GetNumberField(TEXT("warning_count")), 1);
	TArray<FString> Severities = Collect(Warned->GetArrayField(TEXT("messages")), TEXT("severity"));
	EXPECT_TRUE(Severities.Contains(TEXT("warning"))) << S(FString::Join(Severities, TEXT(",")));
}

TEST_F(FBlueprintNodeToolsTest, CompileAnswersTheResolverWhenNothingResolves)
{
	const TSharedPtr<FJsonObject> Unknown = Runner->Call(TEXT("blueprint_compile"), Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("NoSuchBlueprintAnywhere"))}}));
	EXPECT_TRUE(FToolRunner::IsError(Unknown));
	const TSharedPtr<FJsonObject> Resolution = FToolRunner::Payload(Unknown);
	ASSERT_TRUE(Resolution.IsValid());
	EXPECT_EQ(S(Resolution->GetStringField(TEXT("error"))), "Could not resolve asset from query 'NoSuchBlueprintAnywhere'.");
	EXPECT_EQ(Resolution->GetNumberField(TEXT("count")), 0);

	const TSharedPtr<FJsonObject> Empty = Runner->Call(TEXT("blueprint_compile"), Arguments({}));
	EXPECT_TRUE(FToolRunner::IsError(Empty));
	EXPECT_EQ(S(FToolRunner::Payload(Empty)->GetStringField(TEXT("error"))), "Asset name or path is required.");
	EXPECT_EQ(ErrorText(CallOn(TEXT("/Game/Nowhere/BP_Nothing"), TEXT("blueprint_compile"), {})), "Could not load Blueprint: /Game/Nowhere/BP_Nothing.BP_Nothing");
}
