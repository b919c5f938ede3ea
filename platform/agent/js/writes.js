// What the program writes into fields: each as a user's own change, and only if it changes something.
// The file is one function; given the ways into the document, its fields and its forms, and how often the
// structure of these has changed, it gives what the program asks for.
(function (dom, fields, forms, revision) {
  "use strict";

  // Scripts that take a page over when it has been drawn do so at the latest when the user's first key
  // comes; a change that comes without one is lost to them. Pages that act on certain keys do not act on
  // one of this name.
  const kNoKey = { key: "Unidentified" };
  const kEnter = { key: "Enter", code: "Enter", keyCode: 13, which: 13 };

  // Whether anything of the page has run since the request under way began.
  let hasRun = false;

  function dispatch(field, event) {
    hasRun = true;
    return dom.dispatch(field, event);
  }

  const press = (field, type, key = kNoKey) =>
    dispatch(field, new KeyboardEvent(type, { bubbles: true, cancelable: true, composed: true, ...key }));

  const newChange = () => new Event("change", { bubbles: true });
  const newInput = () => new InputEvent("input", { bubbles: true, composed: true, inputType: "insertText" });

  // Each gives the field that was written.
  const writes = {
    value: (handle, text) => {
      const found = forms.standing(handle);
      const before = found.value;
      if (before === text) return found;
      press(found, "keydown");
      const field = forms.standing(handle);
      // The setter of this world's prototype: a page's own setter on the element is not called, so
      // that a page which compares old and new value in its handler sees the change.
      field.value = text;
      if (field.value === before) return field;
      dispatch(field, newInput());
      press(field, "keyup");
      dispatch(field, newChange());
      return field;
    },
    check: (handle) => {
      const field = forms.standing(handle);
      if (field.checked) return field;
      hasRun = true;
      dom.click(field);
      return field;
    },
    select: (handle, texts) => {
      const field = forms.standing(handle);
      const option = forms.optionOf(handle, texts);
      if (option === undefined) throw new Error("the option is gone");
      if (option.selected) return field;
      option.selected = true;
      dispatch(field, new Event("input", { bubbles: true, composed: true }));
      dispatch(field, newChange());
      return field;
    },
  };

  // What was written since the last rest, to be looked at once more.
  let written = [];

  function write(operation, handle, given) {
    written.push({ operation, handle, given, field: writes[operation](handle, given) });
  }

  /** Whether the page has emptied a field since it was written, or put another in its place. */
  function isLost({ operation, handle, given, field }) {
    const now = forms.standing(handle);
    return now !== field || (operation === "value" && now.value === "" && given !== "");
  }

  /** Enter in the one line of a form. A page may take the key for itself. */
  function sendByEnter(line) {
    const { form } = line;
    const goesOn = press(line, "keydown", kEnter) && press(line, "keypress", { ...kEnter, charCode: 13 });
    if (goesOn && dom.isConnected(line) && fields.enterLineOf(form) === line) dom.requestSubmit(form);
    press(line, "keyup", kEnter);
  }

  function click(handle) {
    const node = forms.standing(handle);
    if (dom.isForm(node)) {
      const line = fields.enterLineOf(node);
      if (line !== undefined) sendByEnter(line);
    } else {
      dom.click(node);
    }
  }

  const requests = {
    value: (handle, text) => write("value", handle, text),
    check: (handle) => write("check", handle),
    select: (handle, index) => write("select", handle, forms.toldOption(handle, index)),
    again: () => {
      for (const { operation, handle, given } of written.splice(0).filter(isLost)) writes[operation](handle, given);
    },
  };

  // What was asked for in one go: the revision that the program knows, the requests that are left, how many were
  // done, and when the first was.
  const kNoRow = { known: 0, left: [], done: 0, begunAt: 0 };
  let row = kNoRow;

  // A row ends after so long, in milliseconds: the program waits for it as for one request.
  const kLongestRow = 1000;

  /** Once the structure has changed, the program has to look at it before it writes on. */
  const isCut = () => row.done > 0 && (revision() !== row.known || performance.now() - row.begunAt > kLongestRow);

  /**
   * Does what comes next, up to and including a write at which anything of the page ran. Gives how many writes of the
   * row were done in all; undefined if it is to be called again, when the page's promises have run.
   */
  function goOn() {
    while (row.left.length > 0 && !isCut()) {
      const [operation, ...given] = row.left.shift();
      if (!Object.hasOwn(requests, operation)) throw new Error("no such operation: " + operation);
      hasRun = false;
      requests[operation](...given);
      row.done += 1;
      if (hasRun) return undefined;
    }
    return row.done;
  }

  /** Begins with a row of requests: of each the number of its texts, and these. */
  function begin(known, ...texts) {
    const left = [];
    while (texts.length > 0) left.push(texts.splice(0, 1 + Number(texts[0])).slice(1));
    row = { known: Number(known), left, done: 0, begunAt: performance.now() };
    return goOn();
  }

  return {
    click,
    begin,
    goOn,
    forget: () => {
      written = [];
      row = kNoRow;
    },
  };
})
