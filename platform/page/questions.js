// Questions of a page while the program writes into it. A page that asks its user something stands
// still until it is answered; the program waits for the write and could not show the question. So for as
// long as it writes, messages are kept, to be shown behind it, and questions get the safe answer.
//
// The file is one function, run in the page's own world. It gives the function that ends the hold.
(function () {
  "use strict";

  const own = { alert: window.alert, confirm: window.confirm, prompt: window.prompt };
  const messages = [];
  const held = { alert: (text) => void messages.push(String(text)), confirm: () => false, prompt: () => null };
  Object.assign(window, held);

  return () => {
    // What the page itself has put there meanwhile stays.
    for (const name of Object.keys(own)) {
      if (window[name] === held[name]) window[name] = own[name];
    }
    if (messages.length > 0) setTimeout(() => window.alert(messages.join("\n")));
  };
})
