// Questions of a page while the program writes into it. A page that asks its user something stands
// still until it is answered, and the write with it. So for as long as the program writes, messages are
// kept, to be shown afterwards, and questions get the safe answer.
//
// The file is one function, run in the page's own world. It gives the function that ends the hold.
(function () {
  "use strict";

  const messages = [];
  const held = {
    alert: (text) => void messages.push(String(text)),
    confirm: () => false,
    prompt: () => null,
    print: () => undefined,
  };
  const own = {};

  /** Puts a function in the place of the page's; a page that forbids it keeps its own. */
  function put(name, value) {
    try {
      window[name] = value;
    } catch {
      // its own questions hold up its own form
    }
  }

  for (const name of Object.keys(held)) {
    own[name] = window[name];
    put(name, held[name]);
  }

  return () => {
    // What the page itself has put there meanwhile stays.
    for (const name of Object.keys(held)) {
      if (window[name] === held[name]) put(name, own[name]);
    }
    if (messages.length > 0) setTimeout(() => window.alert(messages.join("\n")));
  };
})
