#!/usr/bin/env python3
"""Stands in for Claude Code in tests of whole runs.

Called with the real command line. Answers by the table in its home, table.json:
  "candidates": what each scope answers, by a text found in the prompt: a list of candidates,
                "fail" (exit status 3), "prose", "hang", or "blank" (an error without a word)
  "judge":      "ok", "fail", "fail-once", "hang", "prose", "blank" or "silent" (judges nobody)
  "dig":        what each unreadable link gives, by a text found in its block: {"url", "title",
                "what"}; the others are not found
  "brief":      the whole answer to a reading note, or "fail", "prose", "hang" or "blank"
  "seconds":    how long each judgment takes
  "delays":     how long a scope takes to answer, by a text found in the prompt
  "poison":     a text that makes every judgment fail whose prompt holds it
  "overlooked": a text whose candidate is judged only when it is alone
  "limit":      {"words", "step", "in", "after"}: once that many such calls were answered, each
                further one ends with those words, as where the account's limit is reached; such a
                call takes that step, and has that text in its prompt, where they are given
Which of these a call is, "candidates", "judge", "dig" or "brief", is noted in its folder,
$VORLE_TEST_CALL, where it has one.
"""
import json
import os
import pathlib
import re
import sys
import time


def leave(message, status=3):
    print(message, file=sys.stderr)
    sys.exit(status)


def judged(prompt, overlooked):
    blocks = re.split(r"(?m)^(?=### id: )", prompt)[1:]
    return [
        {
            "id": re.match(r"### id: (\S+)", block).group(1), "kind": "article",
            "criteria": {"impact": 5, "actionability": 5, "novelty": 5, "reliability": 5,
                         "effort_minutes": 10},
            "relevance": 7, "urgency": {"level": "none"}, "tldr": "gist", "summary": "résumé",
            "why": "parce que", "first_step": "Lis.", "changes": [],
        }
        for block in blocks
        if len(blocks) == 1 or not overlooked or overlooked not in block
    ]


def dug(prompt, plan):
    results = []
    for block in re.split(r"(?m)^(?=### id: )", prompt)[1:]:
        page = next((page for key, page in plan.items() if key in block), None)
        results.append({
            "id": re.match(r"### id: (\S+)", block).group(1), "found": page is not None,
            **(page or {"url": "", "title": "", "what": ""}),
        })
    return results


def limited(home, limit, step, prompt):
    """Whether this call meets the limit; it is counted where it does not."""
    if not limit or limit.get("step", step) != step or limit.get("in", "") not in prompt:
        return False
    for number in range(limit.get("after", 0)):
        try:
            (home / f"answered-{number}").touch(exist_ok=False)
            return False
        except FileExistsError:
            pass
    return True


def main():
    home = pathlib.Path(os.environ["HOME"])
    table = json.loads((home / "table.json").read_text())
    prompt = sys.argv[sys.argv.index("-p") + 1]
    schema = sys.argv[sys.argv.index("--json-schema") + 1]
    steps = {"judge": '"judgments"', "dig": '"results"', "brief": '"essentials"'}
    step = next((name for name, key in steps.items() if key in schema), "candidates")
    if call := os.environ.get("VORLE_TEST_CALL"):
        (pathlib.Path(call) / "step").write_text(step)
    plan = "ok"
    if limited(home, table.get("limit"), step, prompt):
        print(json.dumps({"is_error": True, "result": table["limit"]["words"]}))
        sys.exit(1)
    if step == "dig":
        answer = {"results": dug(prompt, table.get("dig", {}))}
    elif step == "brief":
        plan = answer = table["brief"]
    elif step == "judge":
        plan = table.get("judge", "ok")
        time.sleep(table.get("seconds", 0))
        if plan == "fail-once":
            mark = home / "judged-once"
            plan = "ok" if mark.exists() else "fail"
            mark.touch()
        if table.get("poison", "\0") in prompt:
            plan = "fail"
        overlooked = table.get("overlooked")
        answer = {"judgments": [] if plan == "silent" else judged(prompt, overlooked)}
    else:
        time.sleep(sum(s for key, s in table.get("delays", {}).items() if key in prompt))
        plan = next((value for key, value in table["candidates"].items() if key in prompt), [])
        answer = {"candidates": plan}
    if plan == "fail":
        leave("le serveur est occupé")
    if plan == "hang":
        time.sleep(600)
    if plan == "prose":
        print("Voici ce que j’ai trouvé :")
        return
    if plan == "blank":
        print('{"is_error": true, "result": ""}')
        return
    print(json.dumps({"is_error": False, "result": "", "structured_output": answer,
                      "total_cost_usd": 0.25, "duration_ms": 5}))


main()
