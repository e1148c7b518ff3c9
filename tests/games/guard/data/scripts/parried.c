void main(){
	setglobalvar("parried", getglobalvar("parried") + 1);
}
