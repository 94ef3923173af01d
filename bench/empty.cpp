// The least program of all, for comparison with starting ours.

int main() {
  return 0;
}
