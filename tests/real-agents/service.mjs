// Stands in for both agents' services on loopback, so that the real command lines can be tried
// without an account and without a network. What it does is told by a word in the prompt:
// STANDIN-ANSWER, STANDIN-PROSE (no structured answer), STANDIN-REFUSE (status 400), STANDIN-BUSY
// (status 529 each time), STANDIN-SILENT.
// Usage: node service.mjs PORT LOG; each request's path and body go to the file LOG, a line each.
import { appendFileSync } from "node:fs";
import { createServer } from "node:http";

const [port, log] = process.argv.slice(2);
const answer = { candidates: [{ title: "A « page »", url: "https://example.org/" }] };

const event = (response, type, fields) =>
  response.write(`event: ${type}\ndata: ${JSON.stringify({ type, ...fields })}\n\n`);

function claudeMessage(response, request, prose) {
  const tool = request.tools?.find((each) => each.name === "StructuredOutput");
  const answered = JSON.stringify(request.messages).includes("tool_result");
  const block =
    prose || !tool || answered
      ? [{ type: "text", text: "" }, { type: "text_delta", text: "Nothing to say." }]
      : [{ type: "tool_use", id: "toolu_1", name: tool.name, input: {} },
         { type: "input_json_delta", partial_json: JSON.stringify(answer) }];
  const stop = block[0].type === "tool_use" ? "tool_use" : "end_turn";
  event(response, "message_start", {
    message: { id: "msg_1", type: "message", role: "assistant", model: request.model, content: [],
               stop_reason: null, stop_sequence: null, usage: { input_tokens: 9, output_tokens: 1 } },
  });
  event(response, "content_block_start", { index: 0, content_block: block[0] });
  event(response, "content_block_delta", { index: 0, delta: block[1] });
  event(response, "content_block_stop", { index: 0 });
  event(response, "message_delta", { delta: { stop_reason: stop, stop_sequence: null },
                                     usage: { output_tokens: 9 } });
  event(response, "message_stop", {});
}

function codexMessage(response, prose) {
  const text = prose ? "Nothing to say." : JSON.stringify(answer);
  event(response, "response.created", { response: { id: "r1" } });
  event(response, "response.output_item.done", {
    item: { type: "message", role: "assistant", id: "m1", content: [{ type: "output_text", text }] },
  });
  event(response, "response.completed", {
    response: { id: "r1", usage: { input_tokens: 9, output_tokens: 9, total_tokens: 18 } },
  });
}

createServer((request, response) => {
  let body = "";
  request.on("data", (part) => (body += part));
  request.on("end", () => {
    appendFileSync(log, `${request.method} ${request.url} ${body}\n`);
    const refuse = (status, type) => {
      response.writeHead(status, { "content-type": "application/json" });
      response.end(JSON.stringify({ type: "error", error: { type, message: `told to: ${type}` } }));
    };
    const claude = request.url.startsWith("/v1/messages");
    if (request.method !== "POST" || !(claude || request.url.startsWith("/v1/responses"))) {
      return refuse(404, "not_found_error");
    }
    if (body.includes("STANDIN-REFUSE")) return refuse(400, "invalid_request_error");
    if (body.includes("STANDIN-BUSY")) return refuse(529, "overloaded_error");
    if (body.includes("STANDIN-SILENT")) return undefined;
    response.writeHead(200, { "content-type": "text/event-stream" });
    const prose = body.includes("STANDIN-PROSE");
    if (claude) claudeMessage(response, JSON.parse(body), prose);
    else codexMessage(response, prose);
    return response.end();
  });
}).listen(Number(port), "127.0.0.1");
