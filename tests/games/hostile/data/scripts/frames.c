int depth(int n){ return depth(n + 1); }
void main(){
	setglobalvar("deep", depth(0));
}
