#include "programs/roost-service/AuthorizePageStyle.h"

namespace roost::local {

const char* const authorizePageStyle = R"(
:root {
  color-scheme: light dark;
  --ground: #f3f1ec; --card: #ffffff; --ink: #1f1d1a; --soft: #625d54; --line: #dcd7cc; --edge: #8f887c;
  --accent: #1f6b4f; --on-accent: #ffffff; --picked: #eaf3ee;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #161513; --card: #211f1c; --ink: #f1eee8; --soft: #aba498; --line: #3a3631; --edge: #7d766b;
    --accent: #7fd1ab; --on-accent: #0e2a1e; --picked: #26342d;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; min-height: 100vh; padding: 2rem 1rem; display: grid; place-items: center;
  background: var(--ground); color: var(--ink);
  font: 1rem/1.5 system-ui, "Noto Sans", "DejaVu Sans", sans-serif;
}
main {
  width: 100%; max-width: 27rem; padding: 2rem; background: var(--card);
  border: 1px solid var(--line); border-radius: 1rem;
}
.brand { display: flex; align-items: center; gap: .6rem; margin: 0 0 1.5rem; font-weight: 600; }
.mark { width: 1.25rem; height: 1.25rem; background: var(--accent); border-radius: 50% 50% 50% .25rem; }
h1 {
  margin: 0 0 1.5rem; font-size: 1.375rem; line-height: 1.3; font-weight: 400;
  overflow-wrap: anywhere; text-wrap: balance;
}
h1 strong { font-weight: 650; }
h2, legend { margin: 0 0 .5rem; padding: 0; font-size: .875rem; font-weight: 600; color: var(--soft); }
fieldset { margin: 0 0 1.5rem; padding: 0; border: 0; min-width: 0; }
.profiles { max-height: 17rem; overflow-y: auto; border: 1px solid var(--line); border-radius: .75rem; }
label { display: flex; align-items: center; gap: .75rem; padding: .625rem .875rem; cursor: pointer; }
label + label { border-top: 1px solid var(--line); }
label:has(:checked) { background: var(--picked); }
label span { overflow-wrap: anywhere; }
label img { flex: none; border-radius: 50%; }
input[type=radio] { flex: none; width: 1.125rem; height: 1.125rem; margin: 0; accent-color: var(--accent); }
ul { margin: 0 0 .75rem; padding: 0 0 0 1.125rem; }
li::marker { color: var(--accent); }
.note { margin: 0 0 1.75rem; font-size: .875rem; color: var(--soft); }
.buttons { display: grid; grid-template-columns: 1fr 1fr; gap: .75rem; }
button {
  padding: .6875rem 1rem; font: inherit; font-weight: 600; cursor: pointer; color: var(--ink);
  background: transparent; border: 1px solid var(--edge); border-radius: .625rem;
}
button:hover { border-color: var(--ink); }
button.primary { color: var(--on-accent); background: var(--accent); border-color: var(--accent); }
button.primary:hover { border-color: var(--accent); filter: brightness(1.08); }
:focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; }
.profiles :focus-visible { outline-offset: 1px; }
.foot { margin: 1.25rem 0 0; font-size: .8125rem; text-align: center; color: var(--soft); }
.address { overflow-wrap: anywhere; }
main > :last-child { margin-bottom: 0; }
)";

} // namespace roost::local
