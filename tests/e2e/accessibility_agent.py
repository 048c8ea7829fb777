#!/usr/bin/python3
"""Answers questions about windows through the accessibility bus, one JSON line each.

A process of its own, because a process can be on one accessibility bus only. Controls are found by
their control name, which is their accessible description.
"""

import json
import sys

import pyatspi

MOST_NODES = 20000


def nodes():
    """Every accessible of every program, parents first; what vanishes meanwhile is left out."""
    waiting = list(pyatspi.Registry.getDesktop(0))
    count = 0
    while waiting and count < MOST_NODES:
        node = waiting.pop(0)
        count += 1
        if node is None:
            continue
        yield node
        try:
            waiting.extend(node[i] for i in range(min(node.childCount, 500)))
        except Exception:  # the window has gone while it was read
            continue


def attribute(node, name):
    try:
        return getattr(node, name)
    except Exception:  # the window has gone while it was read
        return None


def is_page_tab(node, caption):
    """A page of a tab strip has no control name: it goes by its caption."""
    return attribute(node, "name") == caption and node.getRole() == pyatspi.ROLE_PAGE_TAB


def find(control, window=None, role=None):
    """A control by its name; with a role, what has that role and that accessible name."""
    for node in nodes():
        if role is None:
            matches = attribute(node, "description") == control or is_page_tab(node, control)
        else:
            matches = attribute(node, "name") == control and node.getRoleName() == role
        if matches and (window is None or owner(node) == window):
            return node
    return None


def owner(node):
    """The title of the window that a control stands in."""
    while node is not None and node.parent is not None:
        if node.parent.getRole() == pyatspi.ROLE_APPLICATION:
            return node.name
        node = node.parent
    return None


def text_of(node):
    try:
        content = node.queryText()
        return content.getText(0, content.characterCount)
    except NotImplementedError:
        return node.name


def item_of(node, name):
    """The first cell or item of a list with that text, and where it is; or nothing."""
    for i in range(min(node.childCount, 2000)):
        child = node[i]
        if child is not None and child.name == name:
            extents = child.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            return [extents.x, extents.y, extents.width, extents.height]
    return None


def answer(request):
    node = find(request["control"], request.get("window"), request.get("role"))
    if node is None:
        return {"found": False}
    extents = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    states = node.getState()
    actions = []
    try:
        action = node.queryAction()
        actions = [action.getName(i) for i in range(action.nActions)]
        if request.get("action") in actions:
            action.doAction(actions.index(request["action"]))
    except NotImplementedError:
        pass
    if request.get("focus"):
        node.queryComponent().grabFocus()
    if "value" in request:
        node.queryEditableText().setTextContents(request["value"])
    return {
        "found": True,
        "name": node.name,
        "text": text_of(node),
        "role": node.getRoleName(),
        "showing": states.contains(pyatspi.STATE_SHOWING),
        "enabled": states.contains(pyatspi.STATE_ENABLED),
        "focused": states.contains(pyatspi.STATE_FOCUSED),
        "checked": states.contains(pyatspi.STATE_CHECKED),
        "extents": [extents.x, extents.y, extents.width, extents.height],
        "actions": actions,
        "item": item_of(node, request["item"]) if "item" in request else None,
        "children": [child.name for child in list(node)[:200] if child is not None],
    }


def main():
    for line in sys.stdin:
        try:
            result = answer(json.loads(line))
        except Exception as error:  # a window that goes while it is read is an answer, too
            result = {"found": False, "error": repr(error)}
        print(json.dumps(result), flush=True)


main()
